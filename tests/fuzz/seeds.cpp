// Makes the first inputs of the fuzz targets: fuzz_seeds FOLDER
#include "fuzz_target.h"
#include "unit/barcode/code_drawing.h"
#include "unit/decode/jpeg_samples.h"
#include "unit/output/png_maker.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <zint.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace doccam::test {
namespace {

class Seeds {
  public:
    explicit Seeds(std::filesystem::path folder)
      : folder_(std::move(folder)) {}

    void add(const std::string& target, const std::string& name, const Bytes& bytes) const {
        std::filesystem::create_directories(folder_ / target);
        std::ofstream file(folder_ / target / name, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }

    void add(const std::string& target, const std::string& name, const std::string& text) const {
        add(target, name, Bytes(text.begin(), text.end()));
    }

  private:
    std::filesystem::path folder_;
};

Bytes word(unsigned value) {
    return {static_cast<unsigned char>(value), static_cast<unsigned char>(value >> 8)};
}

Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

// The targets count sides from 1.
Bytes sides(unsigned width, unsigned height) {
    return joined({word(width - 1), word(height - 1)});
}

Bytes frame(unsigned char padded, const Bytes& jpeg) {
    return joined({{padded}, word(static_cast<unsigned>(jpeg.size())), jpeg});
}

Bytes encoded(const std::string& extension, const cv::Mat& picture) {
    Bytes bytes;
    cv::imencode(extension, picture, bytes);
    return bytes;
}

void addFrames(const Seeds& seeds) {
    const Bytes colour = jpegOf(samplePicture(16, 16), Sampling::k422);
    const Bytes small = jpegOf(samplePicture(9, 7), Sampling::k420);
    const Bytes grey = jpegOf(samplePicture(16, 16), Sampling::kGrey);
    const Bytes half(colour.begin(), colour.begin() + static_cast<int>(colour.size() / 2));
    seeds.add("mjpeg_frames", "same_size",
              joined({sides(16, 16), frame(1, colour), frame(0, colour)}));
    seeds.add("mjpeg_frames", "other_sizes",
              joined({sides(20, 12), frame(1, colour), frame(1, small)}));
    seeds.add("mjpeg_frames", "grey_then_colour",
              joined({sides(16, 16), frame(1, grey), frame(1, colour)}));
    seeds.add("mjpeg_frames", "cut_off", joined({sides(16, 16), frame(1, half), frame(1, colour)}));
    seeds.add("jpeg_memory", "colour", joined({sides(16, 16), colour}));
    seeds.add("jpeg_memory", "smaller", joined({sides(16, 16), small}));
    seeds.add("jpeg_memory", "grey", joined({sides(16, 16), grey}));
    seeds.add("jpeg_memory", "cut_off", joined({sides(16, 16), half}));
    seeds.add("yuyv_frame", "even", joined({sides(8, 6), noise(96)}));
    seeds.add("yuyv_frame", "odd", joined({sides(3, 3), noise(18)}));
    seeds.add("yuyv_frame", "one_pixel", joined({sides(1, 1), noise(2)}));
}

// A bright sheet with a dark mark on a dark table.
cv::Mat page() {
    cv::Mat picture(36, 28, CV_8UC3, cv::Scalar(12, 10, 8));
    cv::rectangle(picture, {4, 5, 20, 25}, cv::Scalar(230, 235, 240), cv::FILLED);
    cv::rectangle(picture, {9, 12, 8, 2}, cv::Scalar(30, 30, 200), cv::FILLED);
    return picture;
}

void addPages(const Seeds& seeds) {
    unsigned char place = 0;
    for (const char* type : {"jpg", "png", "bmp", "tif", "webp", "ppm"}) {
        seeds.add("black_edge_file", type,
                  joined({{place++}, encoded(std::string(".").append(type), page())}));
    }
    const Bytes jpeg = encoded(".jpg", page());
    const Bytes png = encoded(".png", page());
    const auto length = [](const Bytes& file) { return word(static_cast<unsigned>(file.size())); };
    seeds.add("pdf_page", "jpg", joined({length(jpeg), {0}, jpeg}));
    seeds.add("pdf_page", "jpg_and_png", joined({length(jpeg), {0}, jpeg, {1}, png}));
    const std::vector<std::string> grey = {"\x01\x02\x03\x04", "\x05\x06\x07\x08"};
    PngKind alpha{.colour = PNG_COLOR_TYPE_GRAY_ALPHA};
    PngKind interlaced{
        .colour = PNG_COLOR_TYPE_GRAY, .depth = 16, .interlace = PNG_INTERLACE_ADAM7};
    PngKind palette{.colour = PNG_COLOR_TYPE_PALETTE,
                    .depth = 1,
                    .palette = {{1, 2, 3}, {4, 5, 6}},
                    .opacities = {128}};
    const Bytes withAlpha = bytesOf(makePng(2, alpha, grey));
    const Bytes deep = bytesOf(makePng(2, interlaced, grey));
    const Bytes indexed = bytesOf(makePng(2, palette, {"\x40", "\x41"}));
    const Bytes warned = bytesOf(withBadRemark(makeRgbPng(3, 2)));
    seeds.add("pdf_page", "png_alpha", joined({length(withAlpha), {1}, withAlpha}));
    seeds.add("pdf_page", "png_deep_interlaced", joined({length(deep), {1}, deep}));
    seeds.add("pdf_page", "png_palette", joined({length(indexed), {1}, indexed}));
    seeds.add("pdf_page", "png_warning", joined({length(warned), {1}, warned}));
}

Bytes packed(const cv::Mat& grey) {
    return {grey.datastart, grey.dataend};
}

void addCodes(const Seeds& seeds) {
    const cv::Mat qr = drawCode(qrCode("page 1"), 1);
    const cv::Mat bar = drawCode(code128("A1"), 1).rowRange(0, 16).clone();
    const auto width = [](const cv::Mat& grey) {
        return word(static_cast<unsigned>(grey.cols - 1));
    };
    seeds.add("code_picture", "qr", joined({{1}, width(qr), packed(qr)}));
    seeds.add("code_picture", "bar", joined({{0}, width(bar), packed(bar)}));
    seeds.add("code_picture", "specks", joined({{1}, width(qr), packed(withSpecks(qr))}));
    seeds.add("code_file", "qr_png", joined({{1}, encoded(".png", drawCode(qrCode("page 1"), 2))}));
    seeds.add("code_file", "bar_png", joined({{0}, encoded(".png", drawCode(code128("A1"), 2))}));
    seeds.add("code_file", "qr_pgm", joined({{1}, encoded(".pgm", qr)}));
    seeds.add("code_file", "no_code_jpg", joined({{1}, encoded(".jpg", page())}));
}

// A code of each symbology for the readers, a pixel per module.
void addSymbologies(const Seeds& seeds) {
    const std::pair<const char*, Code> codes[] = {
        {"aztec", {BARCODE_AZTEC, "Aztec 1", ""}},
        {"codabar", {BARCODE_CODABAR, "A12B", ""}},
        {"code39", {BARCODE_CODE39, "C 39", ""}},
        {"code93", {BARCODE_CODE93, "C93", ""}},
        {"code128", code128("C 128")},
        {"databar", {BARCODE_DBAR_OMN, "0950110153000", ""}},
        {"databar_expanded", {BARCODE_DBAR_EXP, "[01]98898765432106", "", -1, 0, GS1_MODE}},
        {"databar_stacked", {BARCODE_DBAR_EXPSTK, "[01]98898765432106", "", -1, 0, GS1_MODE}},
        {"data_matrix", {BARCODE_DATAMATRIX, "Matrix", ""}},
        {"ean13", {BARCODE_EANX, "978020137962+51234", ""}},
        {"ean8", {BARCODE_EANX, "1234567", ""}},
        {"itf", {BARCODE_C25INTER, "123456", ""}},
        {"micro_qr", {BARCODE_MICROQR, "12345", ""}},
        {"pdf417", {BARCODE_PDF417, "PDF 417", ""}},
        {"qr", qrCode("page 1")},
        {"upca", {BARCODE_UPCA, "01234567890+12", ""}},
        {"upce", {BARCODE_UPCE, "1234567", ""}},
    };
    for (const auto& [name, code] : codes) {
        const cv::Mat drawn = drawCode(code, 1);
        // A few rows of the bars, the quiet zone above them, and the add-on's.
        const cv::Mat part =
            drawn.cols > 90 ? drawn.rowRange(0, std::min(drawn.rows, 24)).clone() : drawn;
        const Bytes input =
            joined({{0, 2}, word(static_cast<unsigned>(part.cols - 1)), packed(part)});
        for (const char* target : {"zbar_reader", "zxing_reader", "read_codes"}) {
            seeds.add(target, name, input);
        }
    }
}

void addTexts(const Seeds& seeds) {
    seeds.add("supported_models", "remarks",
              std::string("# models\n\n0c45:6366  # one\r\n 1778:0210"));
    seeds.add("supported_models", "malformed", std::string("0c45:6366\n1778-0214\n"));
    std::string many;
    for (int row = 0; row < 10; ++row) {
        many.append("ffff:000").append(std::to_string(row)).append("\n");
    }
    seeds.add("supported_models", "ten_rows", many);
    seeds.add("split", "name", std::string("\x01:USB Camera: USB Camera"));
    seeds.add("split", "empty_pieces", std::string("\x02--a----b--"));
    seeds.add("split", "ends_within", std::string("\x02::a:"));
    seeds.add("split", "no_pattern", std::string("\0abc", 4));
}

void addRequests(const Seeds& seeds) {
    const std::string host = "Host: 127.0.0.1\r\nAuthorization: Bearer token\r\n";
    const std::string json = "Content-Type: application/json\r\nContent-Length: 2\r\n\r\n{}";
    seeds.add("http_head", "get", "GET /api/state HTTP/1.1\r\n" + host + "\r\n");
    seeds.add("http_head", "post", "POST /api/zoom HTTP/1.0\r\n" + host + json);
    seeds.add("http_head", "ticket",
              "GET /events?a=b&ticket=" + std::string(64, 'a') + " HTTP/1.1\r\n" + host + "\r\n");
    seeds.add("http_head", "ranges",
              "HEAD / HTTP/1.1\r\nRange: bytes=0-1,2-3\r\nOrigin: null\r\n" + host + "\r\n");
    seeds.add("http_head", "cut_off", "GET / HTTP/1.1\r\n" + host);
    const std::vector<std::string> bodies = {
        R"({"crop": true, "colour": "bw", "quality": 7})",
        R"({"width": 9000, "height": 64})",
        R"({"steps": -150})",
        R"({"direction": "left"})",
        R"({"for": "/events"})",
        R"({"ids": [3, 1, 2]})",
        R"({"turn": 1, "corners": [[0, 0], [1, 0], [1, 1], [0, 1]]})"};
    for (std::size_t which = 0; which < bodies.size(); ++which) {
        seeds.add("json_command", "field_" + std::to_string(which),
                  std::string(1, static_cast<char>(which)) + bodies[which]);
    }
    seeds.add("json_command", "deep", std::string(1, '\5') + R"({"ids": )" + std::string(500, '['));
}

void addFiles(const Seeds& seeds) {
    for (const char* type : {"jpg", "png", "bmp", "tif", "webp", "ppm"}) {
        seeds.add("picture_header", type, encoded(std::string(".").append(type), page()));
    }
    Bytes progressive;
    cv::imencode(".jpg", page(), progressive, {cv::IMWRITE_JPEG_PROGRESSIVE, 1});
    seeds.add("picture_header", "progressive_jpg", progressive);
    seeds.add("model_rows", "rows", std::string("0c45:6366 # one\n\n# none\n1d6c:0103\n"));
    seeds.add("model_rows", "upper_case", std::string("0C45:6366\n"));
    seeds.add("model_rows", "no_end_of_line", std::string("0c45:6366"));
    seeds.add("scenario", "formats",
              std::string(R"({"cameras": [{"formats": [{"fourcc": "MJPG", "sizes": [[640, 480]]},)"
                          R"({"fourcc": "YUYV", "stepwise": {"from": [2, 2], "to": [8, 8],)"
                          R"("step": [2, 2]}, "rates": [15]}], "intervalMs": 0}]})"));
    seeds.add("scenario", "faults",
              std::string(R"({"cameras": [{"faults": [{"fault": "call", "request": "DQBUF",)"
                          R"("at": 2, "errno": "EIO"}], "scene": {"angle": 9, "sheet": 1},)"
                          R"("controls": [{"name": "hue", "remove": true}]}]})"));
    seeds.add("token_file", "token", std::string(64, 'a'));
    seeds.add("token_file", "upper_case", std::string(64, 'A'));
    seeds.add("token_file", "with_end_of_line", std::string(64, '7') + "\n");
    seeds.add("token_file", "short", std::string(63, '0'));
    seeds.add("scenario", "deep", "{\"cameras\": " + std::string(500, '['));
}

void addManifests(const Seeds& seeds) {
    const std::string recipe =
        R"({"corners": null, "turn": 1, "look": "photo", "colour": "bw", "quality": 7})";
    const std::string sheet =
        R"({"corners": [[1.5, 2], [30, 2], [30, 40], [1, 40]], "turn": 0, "look": "paper",)"
        R"( "colour": "colour", "quality": 85})";
    const std::string start =
        R"({"version": 1, "target": "/a%20b.pdf", "wholeFrame": false, "recipe": )" + recipe;
    const std::string pages =
        R"(, "saved": 0, "last": 2, "pages": [{"id": 2, "frame": "frame-000001.jpg", "finished":)"
        R"( false, "cropped": true, "confidence": 0.75, "recipe": )" +
        sheet + "}]}";
    seeds.add("manifest", "engine", start + R"(, "stills": null)" + pages);
    seeds.add("manifest", "stills",
              start + R"(, "stills": {"cleanEdges": true, "cleanBackground": false})" + pages);
    seeds.add("manifest", "earlier", start + pages);
    seeds.add("manifest", "cut_off", start + R"(, "saved": 1)");
}

void addViews(const Seeds& seeds) {
    const Bytes form = joined({{0}, sides(120, 90)});
    const Bytes dragFar = {5, 0, 0, 0, 0x80, 0xff, 0xff, 0xff, 0x7f};
    seeds.add("preview_view", "best_fit", joined({sides(160, 120), form}));
    seeds.add("preview_view", "zoomed",
              joined({sides(160, 120), form, Bytes(12, 6), {4, 0xf0, 7, 8}}));
    seeds.add("preview_view", "turned", joined({sides(160, 120), form, {10, 6, 11, 11, 7}}));
    seeds.add("preview_view", "far_drag", joined({sides(64, 48), form, {8}, dragFar, {6, 9}}));
    seeds.add("preview_view", "no_form", joined({sides(64, 48), {1}, Bytes(8, 0xff), {6, 12}}));
}

} // namespace
} // namespace doccam::test

int main(int count, char** arguments) {
    using namespace doccam::test;
    if (count != 2) {
        return 1;
    }
    const Seeds seeds(arguments[1]);
    addFrames(seeds);
    addPages(seeds);
    addCodes(seeds);
    addSymbologies(seeds);
    addTexts(seeds);
    addViews(seeds);
    addRequests(seeds);
    addFiles(seeds);
    addManifests(seeds);
    return 0;
}
