// The names of tesseract's languages.
#pragma once

#include <string>
#include <vector>

namespace doccam::host {

// The languages in "eng+deu", each once. Throws Failure for what cannot be the name of one.
std::vector<std::string> languagesIn(const std::string& names);

// Whether a language of that name may be in a package: "deu", "chi_sim", "script/Latin". Models of
// one's own have any name.
bool mayBePackaged(const std::string& language);

// The Debian package with what tesseract knows of a language, of a script ("script/Latin"), or of
// the ways up of pages ("osd").
std::string packageOf(const std::string& language);

} // namespace doccam::host
