// Forward declarations of the record's parts.
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
