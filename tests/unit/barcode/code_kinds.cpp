// The kinds of code in the table of read rates, and the difficulties.
#include "code_pictures.h"
#include "read_rates.h"

#include <zint.h>

#include <initializer_list>
#include <string_view>

namespace doccam::test {
namespace {

constexpr int kSamples = 10;
constexpr int kLargeSamples = 2;

std::string digits(int sample, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += static_cast<char>('0' + (sample * 7 + i * i * 3 + i * 5 + 1) % 10);
    }
    return text;
}

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

std::string link(int sample) {
    return "https://example.org/page/" + digits(sample, 4 + sample % 3);
}

std::string filled(int sample, std::size_t length) {
    std::string text;
    while (text.size() < length) {
        text += "Line " + digits(sample + static_cast<int>(text.size()), 6) + "; ";
    }
    text.resize(length);
    return text;
}

// Bytes below 128, including zero: zbar takes higher ones for letters and recodes them.
std::string bytes(int sample) {
    std::string text = "\x01\x02\x1b";
    for (int i = 0; i < 40; ++i) {
        text += static_cast<char>((sample * 31 + i * 17) % 128);
    }
    return text + '\0' + "end";
}

// zint marks the text as UTF-8 in the code; without the mark readers guess.
Code utf8(int sample) {
    Code code = qrCode("Stra\u00dfe " + digits(sample, 3) + ", K\u00f6ln \u20ac \u6587\u66f8", 2);
    code.inputMode = UNICODE_MODE;
    return code;
}

Kind bar(const std::string& name, std::function<Code(int)> make) {
    return {name, std::move(make), false};
}

Kind qr(const std::string& name, std::function<Code(int)> make) {
    return {name, std::move(make), true};
}

Code plain(int symbology, const std::string& payload) {
    return {symbology, payload, payload};
}

Code checked(int symbology, const std::string& payload) {
    return {symbology, payload, withCheckDigit(payload)};
}

Code dataBar(int sample) {
    const std::string item = joined({"0", digits(sample, 12)});
    return {BARCODE_DBAR_OMN, item, joined({"01", withCheckDigit(item)})};
}

Code dataBarExpanded(int sample) {
    const std::string item = withCheckDigit(joined({"9", digits(sample, 12)}));
    const std::string weight = digits(sample, 6);
    Code code{BARCODE_DBAR_EXP, joined({"[01]", item, "[3103]", weight}),
              joined({"01", item, "3103", weight})};
    code.inputMode = GS1_MODE;
    return code;
}

std::vector<Kind> qrKinds() {
    return {qr("QR, level L", [](int i) { return qrCode(link(i), 1); }),
            qr("QR, level M", [](int i) { return qrCode(link(i), 2); }),
            qr("QR, level Q", [](int i) { return qrCode(link(i), 3); }),
            qr("QR, level H", [](int i) { return qrCode(link(i), 4); }),
            qr("QR, version 1", [](int i) { return qrCode(digits(i, 12), 2, 1); }),
            qr("QR, version 10", [](int i) { return qrCode(filled(i, 200), 2, 10); }),
            qr("QR, version 25", [](int i) { return qrCode(filled(i, 900), 2, 25); }),
            qr("QR, version 40", [](int i) { return qrCode(filled(i, 2300), 1, 40); }),
            qr("QR, UTF-8", utf8),
            qr("QR, binary", [](int i) { return qrCode(bytes(i), 2); })};
}

std::vector<Kind> barKinds() {
    return {bar("Code 128",
                [](int i) {
                    return code128(joined({"DOC-", digits(i, 4), " p", digits(i, 1)}));
                }),
            bar("Code 39",
                [](int i) {
                    return plain(BARCODE_CODE39, joined({"DOC ", digits(i, 4)}));
                }),
            bar("EAN-13",
                [](int i) {
                    return checked(BARCODE_EANX, joined({"4", digits(i, 11)}));
                }),
            bar("EAN-8", [](int i) { return checked(BARCODE_EANX, digits(i, 7)); }),
            bar("UPC-A", [](int i) { return checked(BARCODE_UPCA, digits(i, 11)); }),
            bar("ITF", [](int i) { return plain(BARCODE_C25INTER, digits(i, 14)); }),
            bar("Codabar",
                [](int i) {
                    return plain(BARCODE_CODABAR, joined({"A", digits(i, 6), "B"}));
                }),
            bar("DataBar", dataBar),
            bar("DataBar Expanded", dataBarExpanded),
            bar("PDF417", [](int i) {
                return plain(BARCODE_PDF417, joined({"PDF417 page ", digits(i, 4)}));
            })};
}

// Interpolates from mild to severe over the samples.
double between(double mild, double severe, int sample) {
    return mild + (severe - mild) * sample / (kSamples - 1);
}

View upright(int sample) {
    View view;
    view.seed = sample + 1;
    return view;
}

} // namespace

const std::vector<Kind>& kinds() {
    static const std::vector<Kind> all = [] {
        std::vector<Kind> list = qrKinds();
        const std::vector<Kind> bars = barKinds();
        list.insert(list.end(), bars.begin(), bars.end());
        return list;
    }();
    return all;
}

namespace {

View rotated(int sample) {
    View view = upright(sample);
    view.angle = 5 + 36.0 * sample;
    return view;
}

View small(int sample) {
    View view = upright(sample);
    view.module = between(3.0, 1.0, sample);
    return view;
}

View blurred(int sample) {
    View view = upright(sample);
    view.blur = between(0.3, 1.0, sample);
    return view;
}

View unevenlyLit(int sample) {
    View view = upright(sample);
    view.darkest = between(0.6, 0.05, sample);
    return view;
}

View onTexturedPage(int sample) {
    View view = upright(sample);
    view.textured = true;
    view.module = between(4, 2, sample);
    view.angle = 2.0 * sample;
    return view;
}

View inLargeFrame(int sample) {
    View view = onTexturedPage(sample);
    view.frame = {3264, 2448};
    view.module = 6;
    view.angle = 4.0 + 85.0 * sample;
    return view;
}

} // namespace

const std::vector<Difficulty>& difficulties() {
    static const std::vector<Difficulty> all = {
        {"plain", upright, kSamples},
        {"rotated", rotated, kSamples},
        {"small", small, kSamples},
        {"blurred", blurred, kSamples},
        {"unevenly lit", unevenlyLit, kSamples},
        {"textured page", onTexturedPage, kSamples},
        {"8 megapixels", inLargeFrame, kLargeSamples},
        {"two codes", rotated, kSamples, true},
    };
    return all;
}

} // namespace doccam::test
