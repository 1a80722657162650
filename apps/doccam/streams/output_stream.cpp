#include "streams/output_stream.h"

#include "base/handles/standard_file.h"
#include "host/failure.h"
#include "host/own_output.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace doccam::host {
namespace {

std::filesystem::path temporaryFolder(const GlobalOptions& options) {
    if (options.json) {
        throw Failure(kUsage, "--json and - both want standard output; leave out one of them.");
    }
    if (isatty(fileno(out())) == 1) {
        throw Failure(kUsage, "Standard output is a terminal; redirect it, or name a file.");
    }
    std::error_code error;
    return std::filesystem::temp_directory_path(error);
}

} // namespace

OutputStream::OutputStream(const GlobalOptions& options, const std::string& extension)
  : folder_(temporaryFolder(options))
  , path_((folder_.path() / ("out" + extension)).string()) {
    if (folder_.path().empty()) {
        throw Failure(kFileFailed, std::string("No temporary files can be made (") +
                                       std::strerror(errno) + "); let TMPDIR name another folder.");
    }
    dropResults();
}

void OutputStream::send() const {
    const StandardFile file{std::fopen(path_.c_str(), "rbe")};
    std::array<char, 65536> chunk{};
    std::size_t count = 0;
    while (file && (count = std::fread(chunk.data(), 1, chunk.size(), file.get())) > 0) {
        if (std::fwrite(chunk.data(), 1, count, out()) != count) {
            break;
        }
    }
    finishOutput();
    if (!file || std::ferror(file.get()) != 0) {
        throw Failure(kFileFailed, "The temporary file for standard output cannot be read again; "
                                   "name a file.");
    }
}

} // namespace doccam::host
