// Words laid over a page, unseen.
#pragma once

#include "documents/writer/picture_page.h"

#include <memory>
#include <qpdf/QPDF.hh>
#include <string>
#include <vector>

namespace doccam::host {

// Keeps the PDFs of text open until the document that takes their pages is written.
class TextLayers {
  public:
    explicit TextLayers(QPDF& document)
      : document_(document) {}

    // Lays the first page of the PDF file over a page's picture, as shown. Throws DocumentError.
    void lay(const std::string& file, const PicturePage& page);

  private:
    void shareFonts(QPDFObjectHandle form);

    QPDF& document_;
    std::vector<std::unique_ptr<QPDF>> sources_;
    QPDFObjectHandle font_; // of the first
};

} // namespace doccam::host
