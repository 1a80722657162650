// The parts of the record by name, for those who hand them on.
#pragma once

namespace doccam {

struct LibraryState;

namespace record {

struct Discovery;
struct Documents;
struct Session;
struct Settings;
struct Sheet;
struct View;

} // namespace record
} // namespace doccam
