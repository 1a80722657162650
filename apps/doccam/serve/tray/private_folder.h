// A folder that only this user may enter, for as long as its owner lives.
#pragma once

#include <filesystem>

namespace doccam::serve {

class PrivateFolder {
  public:
    // Makes it where temporary files lie. Throws host::Failure.
    PrivateFolder();
    // Removes it with all that is in it.
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace doccam::serve
