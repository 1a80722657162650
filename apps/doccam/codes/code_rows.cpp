#include "codes/code_rows.h"

#include "codes/symbology_names.h"

#include <cmath>
#include <cstdint>

namespace doccam::host {

Json asJson(const std::string& source, const Code& code) {
    constexpr double kPerPixel = 100;
    Json position = Json::array();
    for (const cv::Point2d& corner : code.corners) {
        position.push_back({std::round(corner.x * kPerPixel) / kPerPixel,
                            std::round(corner.y * kPerPixel) / kPerPixel});
    }
    return {{"source", source},
            {"kind", kindOf(code.symbology)},
            {"symbology", nameOf(code.symbology)},
            {"text", code.text},
            {"bytes", base64Of(code.bytes)},
            {"addon", code.addon.empty() ? Json() : Json(code.addon)},
            {"position", position}};
}

std::string asText(const Code& code) {
    return kindOf(code.symbology) + (": " + code.text);
}

std::string base64Of(std::string_view bytes) {
    static constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::string_view three = bytes.substr(at, 3);
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            group = group << 8U | (i < three.size() ? static_cast<unsigned char>(three[i]) : 0U);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            text += i <= three.size() ? kDigits[group >> (18 - 6 * i) & 63U] : '=';
        }
    }
    return text;
}

} // namespace doccam::host
