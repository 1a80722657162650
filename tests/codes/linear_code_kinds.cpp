// The linear codes among the kinds.
#include "code_kinds.h"
#include "code_texts.h"

#include <zint.h>

namespace doccam::test {

namespace {

using Texts = std::vector<std::string>;

CodeKind linear(const std::string& name, std::function<PrintedCode(cv::RNG&)> make) {
    return {name, false, std::move(make)};
}

PrintedCode printed(int symbology, const std::string& payload, const Texts& texts,
                    const std::string& addon = {}) {
    return {{symbology, payload, texts.front()}, texts, addon};
}

PrintedCode plain(int symbology, const std::string& text) {
    return printed(symbology, text, {text});
}

PrintedCode gs1(int symbology, const GS1Elements& elements) {
    PrintedCode result = printed(symbology, toZint(elements), readForms(elements));
    result.code.inputMode = GS1_MODE;
    return result;
}

PrintedCode ean(cv::RNG& random, int length, int addon) {
    // A leading zero would make it a UPC-A.
    const std::string digits =
        std::to_string(random.uniform(1, 10)) + randomDigits(random, length - 2);
    const std::string more = randomDigits(random, addon);
    return printed(BARCODE_EANX, addon == 0 ? digits : digits + '+' + more,
                   {withCheckDigit(digits)}, more);
}

// Also an EAN-13 with a zero in front.
PrintedCode upcA(cv::RNG& random, int addon) {
    const std::string digits = randomDigits(random, 11);
    const std::string more = randomDigits(random, addon);
    const std::string text = withCheckDigit(digits);
    return printed(BARCODE_UPCA, addon == 0 ? digits : digits + '+' + more, {text, "0" + text},
                   more);
}

// The last digit of the six says where zeros were left out of the UPC-A: 5 to 9, four before it.
PrintedCode upcE(cv::RNG& random) {
    const std::string maker =
        randomDigits(random, 4) + static_cast<char>('1' + random.uniform(0, 9));
    const std::string last(1, static_cast<char>('5' + random.uniform(0, 5)));
    const std::string full = withCheckDigit("0" + maker + "0000" + last);
    return printed(BARCODE_UPCE, "0" + maker + last,
                   {"0" + maker + last + full.back(), full, "0" + full});
}

PrintedCode codabar(cv::RNG& random) {
    const std::string digits = randomDigits(random, 8);
    return printed(BARCODE_CODABAR, "A" + digits + "B", {"A" + digits + "B", digits});
}

PrintedCode itf14(cv::RNG& random) {
    const std::string digits = "1" + randomDigits(random, 12);
    return printed(BARCODE_ITF14, digits, {withCheckDigit(digits)});
}

PrintedCode dataBar(cv::RNG& random, int symbology) {
    const std::string item = "0" + randomDigits(random, 12);
    const std::string whole = withCheckDigit(item);
    return printed(symbology, item, {"01" + whole, "(01)" + whole, whole});
}

std::vector<CodeKind> industrialKinds() {
    return {
        linear("Code 128",
               [](cv::RNG& random) {
                   return plain(BARCODE_CODE128, "Doc-" + randomCapitals(random, 8));
               }),
        linear("GS1-128",
               [](cv::RNG& random) { return gs1(BARCODE_GS1_128, randomBatch(random)); }),
        linear("Code 39",
               [](cv::RNG& random) {
                   return plain(BARCODE_CODE39, "DOC-" + randomCapitals(random, 5));
               }),
        linear("Code 93",
               [](cv::RNG& random) {
                   return plain(BARCODE_CODE93, "DOC-" + randomCapitals(random, 6));
               }),
        linear("Codabar", codabar),
        linear("ITF",
               [](cv::RNG& random) { return plain(BARCODE_C25INTER, randomDigits(random, 12)); }),
        linear("ITF-14", itf14),
    };
}

std::vector<CodeKind> tradeKinds() {
    return {
        linear("EAN-13", [](cv::RNG& random) { return ean(random, 13, 0); }),
        linear("EAN-13 + 2", [](cv::RNG& random) { return ean(random, 13, 2); }),
        linear("EAN-13 + 5", [](cv::RNG& random) { return ean(random, 13, 5); }),
        linear("EAN-8", [](cv::RNG& random) { return ean(random, 8, 0); }),
        linear("UPC-A", [](cv::RNG& random) { return upcA(random, 0); }),
        linear("UPC-A + 5", [](cv::RNG& random) { return upcA(random, 5); }),
        linear("UPC-E", upcE),
    };
}

std::vector<CodeKind> dataBarKinds() {
    return {
        linear("DataBar", [](cv::RNG& random) { return dataBar(random, BARCODE_DBAR_OMN); }),
        linear("DataBar, stacked",
               [](cv::RNG& random) { return dataBar(random, BARCODE_DBAR_STK); }),
        linear("DataBar, stacked omnidirectional",
               [](cv::RNG& random) { return dataBar(random, BARCODE_DBAR_OMNSTK); }),
        linear("DataBar Expanded",
               [](cv::RNG& random) { return gs1(BARCODE_DBAR_EXP, randomWeight(random)); }),
        linear("DataBar Expanded, stacked",
               [](cv::RNG& random) { return gs1(BARCODE_DBAR_EXPSTK, randomBatch(random)); }),
    };
}

} // namespace

std::vector<CodeKind> linearCodeKinds() {
    std::vector<CodeKind> kinds = industrialKinds();
    for (const std::vector<CodeKind>& more : {tradeKinds(), dataBarKinds()}) {
        kinds.insert(kinds.end(), more.begin(), more.end());
    }
    return kinds;
}

} // namespace doccam::test
