// A tray of drawn pages.
#pragma once

#include "serve/tray/page_store.h"

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace doccam::serve {

struct Tray {
    TrayPlace place{false};
    TrayDocument document{place};
    PageStore store{document};

    // Takes a frame, black on the left quarter, as it is.
    int add(int width = 80, int height = 40, const std::vector<std::string>& codes = {}) {
        cv::Mat picture(height, width, CV_8UC3, cv::Scalar(255, 255, 255));
        picture.colRange(0, width / 4).setTo(cv::Scalar(0, 0, 0));
        host::PageDraft draft;
        cv::imencode(".jpg", picture, draft.frame);
        draft.recipe.look = host::Look::kPhoto;
        return store.add(draft, [&](const std::string& /*path*/) { return codes; }).kept.id;
    }

    std::vector<int> ids() const {
        std::vector<int> all;
        for (const Page& page : store.pages()) {
            all.push_back(page.kept.id);
        }
        return all;
    }

    cv::Mat picture(int id) {
        return cv::imread(store.pictures().picture(store.page(id).kept)->path);
    }

    cv::Size thumbnail(int id) {
        const auto bytes = store.pictures().thumbnail(store.page(id).kept);
        return cv::imdecode(std::vector<char>(bytes->begin(), bytes->end()), cv::IMREAD_COLOR)
            .size();
    }

    // In the private folder, without the frames.
    std::size_t pictureFiles() const {
        std::size_t count = 0;
        for (const auto& file : std::filesystem::directory_iterator(document.folder())) {
            count += file.path().filename().string().starts_with("frame-") ? 1 : 0;
        }
        return count;
    }
};

} // namespace doccam::serve
