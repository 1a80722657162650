#include "documents/writer/text_layer.h"

#include "documents/writer/pdf_pages.h"

#include <qpdf/Pl_Buffer.hh>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <utility>

namespace doccam::host {

namespace {

// The form is made of the page's contents as they were before compression.
void compress(QPDFObjectHandle form) {
    Pl_Buffer packed("words");
    Pl_Flate flate("words", &packed, Pl_Flate::a_deflate);
    form.pipeStreamData(&flate, 0, qpdf_dl_generalized);
    form.replaceStreamData(packed.getBufferSharedPointer(),
                           QPDFObjectHandle::newName("/FlateDecode"), QPDFObjectHandle::newNull());
}

} // namespace

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
    compress(form);
    const std::string name = "/Text";
    target.getObjectHandle().getKey("/Resources").getKey("/XObject").replaceKey(name, form);
    const std::string content = target.placeFormXObject(form, name, page.picture, true, true, true);
    target.addPageContents(document_.newStream(content), false);
    sources_.push_back(std::move(source));
}

} // namespace doccam::host
