#include "code_series.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace doccam::test {

namespace {

constexpr int kSamples = 10;
constexpr std::array<int, 4> kCompanies = {2, 4, 6, 9}; // codes in a picture

// From easy to hard over the samples.
double between(double easy, double hard, int sample) {
    return easy + (hard - easy) * sample / (kSamples - 1);
}

Shot plain(int /*sample*/, cv::RNG& /*random*/) {
    return {};
}

Shot rotated(int sample, cv::RNG& /*random*/) {
    Shot shot;
    shot.angle = 5 + 36.0 * sample;
    return shot;
}

Shot small(int sample, cv::RNG& /*random*/) {
    Shot shot;
    shot.module = between(3, 1, sample);
    return shot;
}

Shot blurred(int sample, cv::RNG& /*random*/) {
    Shot shot;
    shot.blur = between(0.3, 1, sample);
    return shot;
}

Shot unevenlyLit(int sample, cv::RNG& random) {
    Shot shot;
    shot.gradient = between(2, 40, sample);
    shot.angle = random.uniform(-4.0, 4.0);
    return shot;
}

Shot textured(int sample, cv::RNG& /*random*/) {
    Shot shot;
    shot.text = true;
    shot.module = between(4, 2, sample);
    shot.angle = 2.0 * sample;
    return shot;
}

Shot noisy(int sample, cv::RNG& random) {
    Shot shot;
    shot.noise = between(0.02, 0.15, sample);
    shot.quality = cvRound(between(80, 15, sample));
    shot.angle = random.uniform(-4.0, 4.0);
    return shot;
}

Shot tilted(int sample, cv::RNG& random) {
    Shot shot;
    shot.tilt = between(10, 50, sample);
    shot.angle = random.uniform(-10.0, 10.0);
    return shot;
}

Shot inverted(int sample, cv::RNG& /*random*/) {
    Shot shot;
    shot.inverted = true;
    shot.angle = 10.0 * sample;
    shot.module = between(5, 2.5, sample);
    return shot;
}

Shot several(int /*sample*/, cv::RNG& random) {
    Shot shot;
    shot.frame = {1600, 1200};
    shot.codeTurn = 8;
    shot.angle = random.uniform(-5.0, 5.0);
    return shot;
}

Shot large(int sample, cv::RNG& /*random*/) {
    Shot shot;
    shot.frame = {3264, 2448};
    shot.text = true;
    shot.module = 6;
    shot.angle = 4.0 + 85.0 * sample;
    return shot;
}

Shot photographed(cv::RNG& random) {
    Shot shot;
    shot.frame = {1600, 1200};
    shot.module = random.uniform(3.0, 5.0);
    shot.angle = random.uniform(-15.0, 15.0) + 90 * random.uniform(0, 4);
    shot.tilt = random.uniform(0.0, 20.0);
    shot.gradient = random.uniform(1.2, 3.0);
    shot.blur = 0.2;
    shot.noise = 0.015;
    shot.quality = 88;
    shot.text = true;
    shot.onDesk = true;
    return shot;
}

Shot onDesk(int sample, cv::RNG& random) {
    Shot shot = photographed(random);
    shot.module = between(5, 2.2, sample);
    shot.tilt = between(5, 35, sample);
    shot.gradient = between(1.5, 8, sample);
    return shot;
}

Shot curved(int sample, cv::RNG& random) {
    Shot shot = photographed(random);
    shot.surface = Surface::kCan;
    shot.bend = between(50, 150, sample);
    shot.text = false;
    return shot;
}

Shot crumpledUp(int sample, cv::RNG& random) {
    Shot shot = photographed(random);
    shot.surface = Surface::kCrumpled;
    shot.bend = between(0.1, 1.2, sample);
    return shot;
}

Shot glaring(int sample, cv::RNG& random) {
    Shot shot = photographed(random);
    shot.glare = between(0.1, 0.9, sample);
    return shot;
}

Shot shaken(int sample, cv::RNG& random) {
    Shot shot = photographed(random);
    shot.motion = between(0.3, 1.8, sample);
    return shot;
}

std::vector<CodeSeries> drawnSeries() {
    constexpr int kPictures = static_cast<int>(kCompanies.size());
    return {{.name = "plain", .shot = plain},
            {.name = "rotated", .shot = rotated},
            {.name = "small", .shot = small},
            {.name = "blurred", .shot = blurred},
            {.name = "unevenly lit", .shot = unevenlyLit},
            {.name = "textured page", .shot = textured},
            {.name = "noise, JPEG", .shot = noisy},
            {.name = "perspective", .shot = tilted},
            {.name = "inverted", .shot = inverted, .matrixOnly = true},
            {.name = "several of the kind",
             .samples = kPictures,
             .shot = several,
             .company = Company::kSameKind},
            {.name = "several kinds",
             .samples = kPictures,
             .shot = several,
             .company = Company::kOtherKinds},
            {.name = "8 megapixels", .samples = 2, .shot = large}};
}

std::vector<CodeSeries> photographedSeries() {
    return {{.name = "desk", .shot = onDesk, .photographed = true},
            {.name = "can", .shot = curved, .photographed = true},
            {.name = "crumpled", .shot = crumpledUp, .photographed = true},
            {.name = "glare", .shot = glaring, .photographed = true},
            {.name = "shaken", .shot = shaken, .photographed = true}};
}

std::uint64_t hashed(std::string_view text, std::uint64_t hash) {
    for (const char letter : text) {
        hash = (hash ^ static_cast<unsigned char>(letter)) * 0x100000001b3ULL;
    }
    return hash;
}

void addOthers(CodePicture& picture, const CodeKind& kind, int count, cv::RNG& random) {
    const std::vector<CodeKind>& kinds = codeKinds();
    while (static_cast<int>(picture.others.size()) < count) {
        const CodeKind& other =
            kinds[static_cast<std::size_t>(random.uniform(0, static_cast<int>(kinds.size())))];
        if (other.name != kind.name) {
            picture.others.push_back(other.make(random));
        }
    }
}

} // namespace

const std::vector<CodeSeries>& codeSeries() {
    static const std::vector<CodeSeries> all = [] {
        std::vector<CodeSeries> series = drawnSeries();
        const std::vector<CodeSeries> photographs = photographedSeries();
        series.insert(series.end(), photographs.begin(), photographs.end());
        return series;
    }();
    return all;
}

CodePicture drawCodePicture(const CodeKind& kind, const CodeSeries& series, int sample,
                            std::uint64_t seed) {
    constexpr std::uint64_t kStart = 0xcbf29ce484222325ULL;
    const std::string name =
        kind.name + '/' + series.name + '/' + std::to_string(sample) + '/' + std::to_string(seed);
    cv::RNG random(hashed(name, kStart));
    const bool alone = series.company == Company::kNone;
    const int all = alone ? 1 : kCompanies.at(static_cast<std::size_t>(sample));
    const int counted = series.company == Company::kOtherKinds ? (all + 1) / 2 : all;
    CodePicture picture;
    for (int i = 0; i < counted; ++i) {
        picture.counted.push_back(kind.make(random));
    }
    addOthers(picture, kind, all - counted, random);
    std::vector<PrintedCode> codes = picture.counted;
    codes.insert(codes.end(), picture.others.begin(), picture.others.end());
    for (std::size_t i = codes.size() - 1; i > 0; --i) {
        std::swap(codes[i],
                  codes[static_cast<std::size_t>(random.uniform(0, static_cast<int>(i) + 1))]);
    }
    picture.grey = takeShot(codes, series.shot(sample, random), random);
    return picture;
}

} // namespace doccam::test
