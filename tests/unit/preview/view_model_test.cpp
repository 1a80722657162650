// The view against a plain model of its rules, over long random use.
#include "preview_fixture.h"

#include <doccam/doccam.hpp>

#include <cstdlib>
#include <random>

namespace doccam::test {
namespace {

// The rules one after the other, as a host's programmer would state them.
class Model : public PreviewFields {
  public:
    explicit Model(FrameSize frame)
      : frame_(frame) {}

    void declareForm(int width, int height) {
        FormWidth = width;
        FormHeight = height;
        fit(width, height);
    }

    void fit(int formWidth, int formHeight) {
        const int w = width(), h = height();
        if (w < formWidth && h < formHeight) {
            pZoomScale = 100.0;
        } else if (static_cast<double>(formWidth) / formHeight > static_cast<double>(w) / h) {
            pZoomScale = 100.0 * formHeight / h;
        } else {
            pZoomScale = 100.0 * formWidth / w;
        }
        pBestScale = pZoomScale;
        computeZoomedSize();
        ZoomStartX = (FormWidth - static_cast<int>(pBestScale * w / 100.0)) / 2;
        ZoomStartY = (FormHeight - static_cast<int>(pBestScale * h / 100.0)) / 2;
        FormStartX = VideoOffsetX = ZoomStartX;
        FormStartY = VideoOffsetY = ZoomStartY;
        ShowWidth = (ZoomWidth < FormWidth ? ZoomWidth : FormWidth) / 4 * 4;
        ShowHeight = (ZoomHeight < FormHeight ? ZoomHeight : FormHeight) / 4 * 4;
    }

    void zoomIn() {
        pZoomScale += 4.0;
        if (pZoomScale > 600.0) {
            pZoomScale = 600.0;
        }
        recentre();
    }

    void zoomOut() {
        pZoomScale -= 4.0;
        if (pBestScale > pZoomScale) {
            pZoomScale = pBestScale;
        }
        recentre();
    }

    void trueSize() {
        pZoomScale = 100.0;
        recentre();
    }

    void bestSize() {
        pZoomScale = pBestScale;
        recentre();
    }

    void turn(int step) {
        RotateFlag = 2;
        RotateAngle += step;
        if (RotateAngle < 0) {
            RotateAngle = 3;
        }
        if (RotateAngle > 3) {
            RotateAngle = 0;
        }
        fit(FormWidth, FormHeight);
        centre();
    }

    void move(int dx, int dy) {
        VideoOffsetX += dx;
        VideoOffsetY += dy;
        if (ZoomWidth < FormWidth) {
            ShowWidth = ZoomWidth / 4 * 4;
            ZoomStartX = 0;
            if (VideoOffsetX < 0) {
                VideoOffsetX -= dx;
                FormStartX = 0;
            } else {
                if (VideoOffsetX + ZoomWidth > FormWidth) {
                    VideoOffsetX = FormWidth - ZoomWidth;
                }
                FormStartX = VideoOffsetX;
            }
        } else {
            if (ZoomWidth - std::abs(VideoOffsetX) < FormWidth) {
                VideoOffsetX = FormWidth - ZoomWidth;
            }
            if (VideoOffsetX > 0) {
                VideoOffsetX = 0;
            }
            ShowWidth = FormWidth / 4 * 4;
            FormStartX = 0;
            ZoomStartX = VideoOffsetX;
        }
        if (ZoomHeight < FormHeight) {
            ShowHeight = ZoomHeight / 4 * 4;
            ZoomStartY = 0;
            if (VideoOffsetY < 0) {
                VideoOffsetY -= dy;
                FormStartY = 0;
            } else {
                if (VideoOffsetY + ZoomHeight > FormHeight) {
                    VideoOffsetY = FormHeight - ZoomHeight;
                }
                FormStartY = VideoOffsetY;
            }
        } else {
            if (ZoomHeight - std::abs(VideoOffsetY) < FormHeight) {
                VideoOffsetY = FormHeight - ZoomHeight;
            }
            if (VideoOffsetY > 0) {
                VideoOffsetY = 0;
            }
            ShowHeight = FormHeight / 4 * 4;
            FormStartY = 0;
            ZoomStartY = VideoOffsetY;
        }
    }

  private:
    int width() const { return RotateAngle % 2 == 0 ? frame_.width : frame_.height; }

    int height() const { return RotateAngle % 2 == 0 ? frame_.height : frame_.width; }

    void computeZoomedSize() {
        ZoomWidth = static_cast<int>(pZoomScale * width() / 100.0);
        ZoomHeight = static_cast<int>(pZoomScale * height() / 100.0);
    }

    void recentre() {
        computeZoomedSize();
        centre();
    }

    void centre() {
        ZoomStartX = VideoOffsetX = (FormWidth - ZoomWidth) / 2;
        ZoomStartY = VideoOffsetY = (FormHeight - ZoomHeight) / 2;
        if (ZoomWidth < FormWidth) {
            ShowWidth = ZoomWidth / 4 * 4;
            FormStartX = (FormWidth - ShowWidth) / 2;
        } else {
            FormStartX = 0;
            ShowWidth = FormWidth / 4 * 4;
        }
        if (ZoomHeight < FormHeight) {
            ShowHeight = ZoomHeight / 4 * 4;
            FormStartY = (FormHeight - ShowHeight) / 2;
        } else {
            FormStartY = 0;
            ShowHeight = FormHeight / 4 * 4;
        }
    }

    FrameSize frame_;
};

class RandomHost {
  public:
    explicit RandomHost(unsigned seed)
      : random_(seed) {}

    int between(int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random_);
    }

    FrameSize frame() {
        switch (between(0, 3)) {
        case 0:
            return {640, 480};
        case 1:
            return {3264, 2448};
        case 2:
            return {1920, 1080};
        default:
            return {between(1, 3264), between(1, 2448)};
        }
    }

    // Applies one operation to the library and to the model.
    void act(Model& model) {
        switch (between(0, 12)) {
        case 0:
            declareForm(model);
            break;
        case 1:
            fit(model);
            break;
        case 2:
            Web_TrueSize();
            model.trueSize();
            break;
        case 3:
            Web_BestSize();
            model.bestSize();
            break;
        case 4:
            Web_RotateL();
            model.turn(-1);
            break;
        case 5:
            Web_RotateR();
            model.turn(1);
            break;
        case 6:
            Web_ZoomOut();
            model.zoomOut();
            break;
        case 7:
            setAngle(model);
            break;
        case 8:
            zoomInOften(model);
            break;
        default:
            move(model);
            break;
        }
    }

    void declareForm(Model& model) {
        const int width = between(1, 2000), height = between(1, 1500);
        SetWebFormSize(width, height);
        model.declareForm(width, height);
    }

  private:
    void fit(Model& model) {
        const int width = between(1, 2000), height = between(1, 1500);
        FuncSuitableSize(width, height);
        model.fit(width, height);
    }

    // Until the next operation the view stays that of the previous angle.
    void setAngle(Model& model) {
        model.RotateAngle = between(0, 3);
        SetRotate(model.RotateAngle);
    }

    void zoomInOften(Model& model) {
        for (int times = between(1, 40); times > 0; --times) {
            Web_ZoomIn();
            model.zoomIn();
        }
    }

    void move(Model& model) {
        const int reach = between(0, 1) == 0 ? 40 : 4000;
        const int dx = between(-reach, reach), dy = between(-reach, reach);
        Web_SetMoveOffet(dx, dy);
        model.move(dx, dy);
    }

    std::mt19937 random_;
};

class ViewModel : public Preview {};

TEST_F(ViewModel, AgreesFieldByFieldOverRandomUse) {
    constexpr unsigned kSequences = 4000;
    constexpr int kSteps = 40;
    for (unsigned seed = 0; seed < kSequences; ++seed) {
        RandomHost host(seed);
        const FrameSize frame = host.frame();
        setFields({});
        stream(frame);
        Model model(frame);
        host.declareForm(model);
        for (int step = 0; step < kSteps; ++step) {
            ASSERT_EQ(currentFields(), model) << "frame " << frame.width << 'x' << frame.height
                                              << ", seed " << seed << ", step " << step;
            host.act(model);
        }
    }
}

} // namespace
} // namespace doccam::test
