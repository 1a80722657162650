// Fields that the record has and nothing reads.
#pragma once

#include <string>
#include <vector>

struct CvSeq;

namespace doccam::record {

struct Unused {
    bool isMjpegMode = true;
    std::vector<int> areaList;
    std::vector<CvSeq*> cvSeqList;
    int ManualCutX = 0, ManualCutY = 0, ManualCutW = 0, ManualCutH = 0;
    std::vector<std::string> addFileList;
};

} // namespace doccam::record
