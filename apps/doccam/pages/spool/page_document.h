// A document in the making: frames in order, each with its recipe, on disk before they are told.
#pragma once

#include "host/failure.h"
#include "pages/frame_file.h"
#include "pages/spool/manifest.h"
#include "pages/spool/private_folder.h"

#include <opencv2/core/mat.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace doccam::host {

// A page's frame is missing, ends too early or cannot be decoded, or its corners are no sheet's.
class DamagedFrame : public Failure {
  public:
    explicit DamagedFrame(const std::string& frame);
};

// One thread changes it, any thread reads it. What has been changed is on disk when the call
// returns, and survives the process and a power failure; a call that throws Failure has changed
// nothing. Other processes leave the document alone while the object lives.
class PageDocument {
  public:
    // Called before a file of so many bytes is written; throws Failure if there is no room.
    using MakeRoom = std::function<void(std::uint64_t bytes)>;

    // Takes over a folder, locked if others may find it, whose manifest is given.
    PageDocument(std::string name, PrivateFolder folder, UniqueFd lock, Manifest manifest,
                 MakeRoom makeRoom);

    // A document that nothing keeps, in a folder that goes with its owner. Throws Failure.
    static std::unique_ptr<PageDocument> inFolder(const std::string& folder,
                                                  const DocumentPlan& plan);

    // As the spool lists it; empty if nothing keeps the document.
    const std::string& name() const { return name_; }

    DocumentPlan plan() const;
    // Since its last change.
    bool isSaved() const;
    // In the user's order.
    std::vector<KeptPage> pages() const;
    // Those that can be restored, the one set aside last at the end.
    std::vector<KeptPage> removedPages() const;

    // Writes a frame, which is no page yet, and returns its name. The next one takes its place
    // unless it has become one.
    std::string keep(const FrameFile& frame);

    // Decodes a kept frame, blue first. Throws DamagedFrame.
    cv::Mat frame(const std::string& name) const;

    // The size of a kept frame by its header; 0 x 0 for one that is missing or has none.
    cv::Size frameSize(const std::string& name) const;

    // The file of a kept frame. Throws DamagedFrame if it is missing.
    FrameFile file(const std::string& name) const;

    // Adds a kept frame as the last page.
    KeptPage add(const std::string& frame, const Recipe& recipe, const PageOrigin& origin = {});

    // These throw Failure also if there is no page id. A changed page is made of its frame anew,
    // also one that was finished.
    void retake(int id, const std::string& frame, const Recipe& recipe,
                const PageOrigin& origin = {});
    void change(int id, const Recipe& recipe);
    void remove(int id);

    // Removes a page, and brings it back to where it was. The last kMaximumRemoved can be.
    static constexpr std::size_t kMaximumRemoved = 20;
    void setAside(int id);
    void restore(int id);

    // ids must contain each page once; throws Failure otherwise.
    void reorder(const std::vector<int>& ids);

    void setPlan(const DocumentPlan& plan);

    // Notes that the document has been saved, so that the spool may clear it a day later; as
    // target unless that is empty.
    void markSaved(const std::string& target = "");

  private:
    // Applies change to a copy of the manifest, which replaces it once it is on disk.
    void commit(const std::function<void(Manifest&)>& change);

    const std::string name_;
    const PrivateFolder folder_;
    const UniqueFd lock_;
    const MakeRoom makeRoom_;
    mutable std::mutex mutex_;
    Manifest manifest_;
};

// The name of the file in which a document's folder has its manifest, and of the one to lock.
inline constexpr const char* kManifestFile = "pages.json";
inline constexpr const char* kLockFile = "owner";

// The manifest in a document's folder; none if it is missing or damaged.
std::optional<Manifest> readManifest(const PrivateFolder& folder);

// False with errno set.
bool writeManifest(const PrivateFolder& folder, const Manifest& manifest);

} // namespace doccam::host
