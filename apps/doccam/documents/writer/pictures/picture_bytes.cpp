#include "documents/writer/pictures/picture_bytes.h"

#include "documents/writer/document_plan.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <qpdf/Pipeline.hh>
#include <utility>

namespace doccam::host {
namespace {

void copy(std::ifstream& file, const Extent& extent, Pipeline& target) {
    std::array<char, 65536> some{};
    file.seekg(static_cast<std::streamoff>(extent.offset));
    for (std::uint64_t left = extent.length; left > 0;) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(left, some.size()));
        if (!file.read(some.data(), static_cast<std::streamsize>(count))) {
            throw DocumentError("has changed while it was read");
        }
        target.write(reinterpret_cast<const unsigned char*>(some.data()), count);
        left -= count;
    }
}

void provide(const ImageStream& image, Pipeline& target) {
    if (image.file.empty()) {
        target.write(image.bytes.data(), image.bytes.size());
    } else {
        std::ifstream file(image.file, std::ios::binary);
        for (const Extent& extent : image.extents) {
            copy(file, extent, target);
        }
    }
    target.finish();
}

} // namespace

QPDFObjectHandle imageDictionary(cv::Size size, const std::string& entries) {
    return QPDFObjectHandle::parse("<< /Type /XObject /Subtype /Image /Width " +
                                   std::to_string(size.width) + " /Height " +
                                   std::to_string(size.height) + " " + entries + " >>");
}

QPDFObjectHandle addImage(QPDF& document, ImageStream image) {
    QPDFObjectHandle stream = document.newStream();
    stream.replaceDict(image.dictionary);
    QPDFObjectHandle filter = image.dictionary.getKey("/Filter");
    QPDFObjectHandle parameters = image.dictionary.getKey("/DecodeParms");
    const auto shared = std::make_shared<const ImageStream>(std::move(image));
    stream.replaceStreamData([shared](Pipeline* target) { provide(*shared, *target); }, filter,
                             parameters);
    return stream;
}

Bytes readFile(const std::string& file) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    std::ifstream stream(file, std::ios::binary);
    Bytes bytes(error ? 0 : size);
    if (error || !stream.read(reinterpret_cast<char*>(bytes.data()),
                              static_cast<std::streamsize>(bytes.size()))) {
        throw DocumentError("cannot be read");
    }
    return bytes;
}

} // namespace doccam::host
