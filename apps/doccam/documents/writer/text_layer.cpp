#include "documents/writer/text_layer.h"

#include "documents/writer/pdf_pages.h"

#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <utility>

namespace doccam::host {

// Every page of recognized text comes with the same font without glyphs.
void TextLayers::shareFonts(QPDFObjectHandle form) {
    QPDFObjectHandle fonts = form.getDict().getKey("/Resources").getKey("/Font");
    if (!fonts.isDictionary()) {
        return;
    }
    for (const std::string& name : fonts.getKeys()) {
        if (font_.isInitialized()) {
            fonts.replaceKey(name, font_);
        } else {
            font_ = fonts.getKey(name);
        }
    }
}

void TextLayers::lay(const std::string& file, const PicturePage& page) {
    std::unique_ptr<QPDF> source = openPdf(file);
    QPDFPageObjectHelper text = QPDFPageDocumentHelper(*source).getAllPages().front();
    QPDFPageObjectHelper target(page.page);
    QPDFObjectHandle form = document_.copyForeignObject(text.getFormXObjectForPage());
    shareFonts(form);
    const std::string name = "/Text";
    target.getObjectHandle().getKey("/Resources").getKey("/XObject").replaceKey(name, form);
    const std::string content = target.placeFormXObject(form, name, page.picture, true, true, true);
    target.addPageContents(document_.newStream(content), false);
    sources_.push_back(std::move(source));
}

} // namespace doccam::host
