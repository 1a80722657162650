#include "documents/writer/pdf_pages.h"

#include <array>
#include <fstream>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <string_view>
#include <utility>

namespace doccam::host {
namespace {

constexpr double kMillimetresPerPoint = 25.4 / 72;

bool isSigned(QPDF& document) {
    QPDFObjectHandle form = document.getRoot().getKey("/AcroForm");
    if (!form.isDictionary()) {
        return false;
    }
    QPDFObjectHandle flags = form.getKey("/SigFlags");
    if (flags.isInteger() && (flags.getIntValue() & 1) != 0) {
        return true;
    }
    QPDFAcroFormDocumentHelper fields(document);
    for (QPDFFormFieldObjectHelper& field : fields.getFormFields()) {
        if (field.getFieldType() == "/Sig" && !field.getValue().isNull()) {
            return true;
        }
    }
    return false;
}

// Appends the array of more to that of all.
void append(QPDFObjectHandle all, QPDFObjectHandle more, const char* key) {
    if (!all.isDictionary() || !more.isDictionary() || !more.getKey(key).isArray()) {
        return;
    }
    if (!all.getKey(key).isArray()) {
        all.replaceKey(key, QPDFObjectHandle::newArray());
    }
    QPDFObjectHandle target = all.getKey(key);
    for (const QPDFObjectHandle& item : more.getKey(key).aitems()) {
        target.appendItem(item);
    }
}

} // namespace

bool isPdf(const std::string& file) {
    constexpr std::string_view kSignature = "%PDF-";
    std::array<char, 1024> start{};
    std::ifstream stream(file, std::ios::binary);
    stream.read(start.data(), start.size());
    const std::string_view bytes(start.data(), static_cast<std::size_t>(stream.gcount()));
    return bytes.find(kSignature) != std::string_view::npos;
}

std::unique_ptr<QPDF> openPdf(const std::string& file) {
    auto document = std::make_unique<QPDF>();
    document->setSuppressWarnings(true);
    try {
        document->processFile(file.c_str());
        if (document->isEncrypted()) {
            throw DocumentError("is encrypted; save it without a password first");
        }
        if (isSigned(*document)) {
            throw DocumentError("is signed, and a change would break its signature");
        }
        if (document->getAllPages().empty()) {
            throw DocumentError("has no pages");
        }
    } catch (const QPDFExc& error) {
        throw DocumentError(error.getErrorCode() == qpdf_e_password
                                ? "is encrypted; save it without a password first"
                                : "is a damaged PDF");
    }
    return document;
}

void takeOptionalContent(QPDF& document, QPDF& other) {
    QPDFObjectHandle theirs = other.getRoot().getKey("/OCProperties");
    if (!theirs.isDictionary()) {
        return;
    }
    if (!theirs.isIndirect()) {
        theirs = other.makeIndirectObject(theirs);
    }
    QPDFObjectHandle taken = document.copyForeignObject(theirs);
    QPDFObjectHandle own = document.getRoot().getKey("/OCProperties");
    if (!own.isDictionary()) {
        document.getRoot().replaceKey("/OCProperties", taken);
        return;
    }
    append(own, taken, "/OCGs");
    QPDFObjectHandle ownState = own.getKey("/D");
    QPDFObjectHandle takenState = taken.getKey("/D");
    for (const char* const key : {"/ON", "/OFF", "/Order", "/Locked"}) {
        append(ownState, takenState, key);
    }
}

std::vector<Millimetres> pageSizes(QPDF& document) {
    std::vector<Millimetres> sizes;
    for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(document).getAllPages()) {
        const auto box = page.getCropBox().getArrayAsRectangle();
        Millimetres size{(box.urx - box.llx) * kMillimetresPerPoint,
                         (box.ury - box.lly) * kMillimetresPerPoint};
        QPDFObjectHandle turn = page.getAttribute("/Rotate", false);
        if (turn.isInteger() && turn.getIntValue() % 180 != 0) {
            std::swap(size.width, size.height);
        }
        sizes.push_back(size);
    }
    return sizes;
}

} // namespace doccam::host
