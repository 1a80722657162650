#include "documents/writer/pdf_writer.h"

#include "documents/writer/pdf_pages.h"
#include "documents/writer/picture_page.h"
#include "documents/writer/text_layer.h"

#include <map>
#include <memory>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
#include <qpdf/QUtil.hh>
#include <utility>

namespace doccam::host {
namespace {

class PdfWriter {
  public:
    explicit PdfWriter(const PdfPlan& plan)
      : plan_(plan)
      , document_(plan.base.empty() ? emptyPdf() : openPdf(plan.base))
      , texts_(*document_) {}

    void addPages() {
        for (const PlannedPage& planned : plan_.pages) {
            if (isPdfPage(planned)) {
                addPdfPage(planned);
                continue;
            }
            const PicturePage page = addPicturePage(*document_, planned);
            if (!planned.text.empty()) {
                texts_.lay(planned.text, page);
            }
        }
    }

    void describe();

    void write(const std::string& path) {
        QPDFWriter writer(*document_, path.c_str());
        writer.setStreamDataMode(qpdf_s_preserve);
        writer.setObjectStreamMode(qpdf_o_generate);
        writer.write();
    }

  private:
    static std::unique_ptr<QPDF> emptyPdf() {
        auto document = std::make_unique<QPDF>();
        document->emptyPDF();
        return document;
    }

    static bool isPdfPage(const PlannedPage& planned) {
        return planned.pixels.empty() && !planned.layers && isPdf(planned.file);
    }

    void addPdfPage(const PlannedPage& planned) {
        auto& source = sources_[planned.file];
        if (!source) {
            source = openPdf(planned.file);
            takeOptionalContent(*document_, *source);
        }
        QPDFPageDocumentHelper(*document_)
            .addPage(QPDFPageDocumentHelper(*source).getAllPages().at(
                         static_cast<std::size_t>(planned.part)),
                     false);
    }

    const PdfPlan& plan_;
    std::map<std::string, std::unique_ptr<QPDF>> sources_; // until the document is written
    std::unique_ptr<QPDF> document_;
    TextLayers texts_;
};

// What the plan leaves out stays as the base has it.
void PdfWriter::describe() {
    if (!plan_.title.empty() || !plan_.author.empty() || plan_.date) {
        document_->getRoot().removeKey("/Metadata"); // which would say otherwise
    }
    QPDFObjectHandle trailer = document_->getTrailer();
    if (!trailer.getKey("/Info").isDictionary()) {
        trailer.replaceKey("/Info",
                           document_->makeIndirectObject(QPDFObjectHandle::newDictionary()));
    }
    QPDFObjectHandle info = trailer.getKey("/Info");
    const auto set = [&info](const char* key, const std::string& text) {
        if (!text.empty()) {
            info.replaceKey(key, QPDFObjectHandle::newUnicodeString(text));
        }
    };
    set("/Title", plan_.title);
    set("/Author", plan_.author);
    const std::string now = QUtil::qpdf_time_to_pdf_time(QUtil::get_current_qpdf_time());
    info.replaceKey("/ModDate", QPDFObjectHandle::newString(now));
    if (plan_.base.empty()) {
        set("/Creator", "doccam");
        info.replaceKey("/CreationDate", QPDFObjectHandle::newString(now));
    }
    if (plan_.date) {
        std::tm day{};
        localtime_r(&*plan_.date, &day);
        const QUtil::QPDFTime time(day.tm_year + 1900, day.tm_mon + 1, day.tm_mday, day.tm_hour,
                                   day.tm_min, day.tm_sec, static_cast<int>(-day.tm_gmtoff / 60));
        info.replaceKey("/CreationDate",
                        QPDFObjectHandle::newString(QUtil::qpdf_time_to_pdf_time(time)));
    }
    if (!plan_.language.empty()) {
        document_->getRoot().replaceKey("/Lang",
                                        QPDFObjectHandle::newUnicodeString(plan_.language));
    }
}

} // namespace

void writePdf(const PdfPlan& plan, const std::string& path) {
    try {
        PdfWriter writer(plan);
        writer.addPages();
        writer.describe();
        writer.write(path);
    } catch (const DocumentError&) {
        throw;
    } catch (const std::exception& error) {
        throw DocumentError("could not be written: " + std::string(error.what()));
    }
}

} // namespace doccam::host
