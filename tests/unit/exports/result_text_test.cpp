#include <doccam/doccam.h>

#include <gmock/gmock.h>

#include <climits>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace doccam::test {
namespace {

using testing::EndsWith;
using testing::StartsWith;

constexpr const char* kNoSuchResult = "The operation has no such result.";
constexpr const char* kNoSuchOperation = "There is no such operation.";

struct Constant {
    std::string name;
    int value;
};

// The enumerators of the public header whose values match pattern.
std::vector<Constant> constants(const std::string& pattern) {
    std::ifstream header(DOCCAM_RESULTS_HEADER);
    const std::regex enumerator("^    (DOCCAM_[A-Z0-9_]+) = (" + pattern + ")\\b.*");
    std::vector<Constant> found;
    std::smatch match;
    for (std::string line; std::getline(header, line);) {
        if (std::regex_match(line, match, enumerator)) {
            found.push_back({match[1], std::stoi(match[2])});
        }
    }
    return found;
}

std::vector<Constant> operations() {
    return constants("[1-9][0-9]*");
}

std::vector<Constant> failures() {
    return constants("-[0-9]+");
}

// The operation whose name is a prefix of the failure's; 0 when there is none.
int operationOf(const Constant& failure) {
    for (const Constant& operation : operations()) {
        if (failure.name.starts_with(operation.name + "_")) {
            return operation.value;
        }
    }
    return 0;
}

std::string text(int operation, int result) {
    return doccam_result_text(operation, result);
}

TEST(ResultText, IsASentenceForEveryFailureInTheHeader) {
    ASSERT_EQ(failures().size(), 39U);
    for (const Constant& failure : failures()) {
        const std::string sentence = text(operationOf(failure), failure.value);
        EXPECT_NE(sentence, kNoSuchResult) << failure.name;
        EXPECT_NE(sentence, kNoSuchOperation) << failure.name;
        EXPECT_THAT(sentence, EndsWith(".")) << failure.name;
    }
}

TEST(ResultText, IsASentenceForEverySuccess) {
    ASSERT_EQ(operations().size(), 16U);
    for (const Constant& operation : operations()) {
        EXPECT_NE(text(operation.value, DOCCAM_OK), kNoSuchResult) << operation.name;
        EXPECT_NE(text(operation.value, DOCCAM_OK), kNoSuchOperation) << operation.name;
    }
}

TEST(ResultText, DiffersForEachResultOfAnOperation) {
    std::map<int, std::set<std::string>> texts;
    std::map<int, std::size_t> counts;
    for (const Constant& failure : failures()) {
        const int operation = operationOf(failure);
        texts[operation].insert(text(operation, failure.value));
        ++counts[operation];
    }
    for (const auto& [operation, count] : counts) {
        EXPECT_EQ(texts[operation].size(), count) << "operation " << operation;
    }
}

TEST(ResultText, DependsOnTheOperation) {
    EXPECT_EQ(text(DOCCAM_OPEN, -1), "There is no such camera.");
    EXPECT_EQ(text(DOCCAM_QUEUE, -1), "There is no such file to queue.");
    EXPECT_EQ(text(DOCCAM_OPEN, DOCCAM_OPEN_NO_NODE), "The camera's device node cannot be opened.");
}

TEST(ResultText, NamesUnknownResultsAndOperations) {
    for (const int result : {1, -4, -15, -100, INT_MIN, INT_MAX}) {
        EXPECT_EQ(text(DOCCAM_OPEN, result), kNoSuchResult) << result;
    }
    for (const int operation : {0, -1, DOCCAM_VIEW + 1, INT_MIN, INT_MAX}) {
        EXPECT_EQ(text(operation, 0), kNoSuchOperation) << operation;
        EXPECT_EQ(text(operation, -1), kNoSuchOperation) << operation;
    }
}

TEST(ResultText, KnowsTheOperationsThatReturnAValue) {
    EXPECT_THAT(text(DOCCAM_DEVICES, 9), StartsWith("The result is the number"));
    EXPECT_EQ(text(DOCCAM_DEVICES, -2), kNoSuchResult);
    EXPECT_THAT(text(DOCCAM_CONTROL_RESET, -64), StartsWith("The control has its default"));
}

TEST(ResultText, IsTheSamePointerAtEachCall) {
    EXPECT_EQ(doccam_result_text(DOCCAM_OPEN, -3), doccam_result_text(DOCCAM_OPEN, -3));
}

TEST(Version, IsTheProjectVersionInHeaderAndLibrary) {
    EXPECT_EQ(DOCCAM_VERSION_MAJOR, PROJECT_VERSION_MAJOR);
    EXPECT_EQ(DOCCAM_VERSION_MINOR, PROJECT_VERSION_MINOR);
    EXPECT_EQ(DOCCAM_VERSION_PATCH, PROJECT_VERSION_PATCH);
    EXPECT_STREQ(DOCCAM_VERSION_STRING, PROJECT_VERSION);
    EXPECT_EQ(doccam_version(), DOCCAM_VERSION);
}

TEST(Version, GrowsWithEachOfItsParts) {
    static_assert(DOCCAM_VERSION_NUMBER(1, 0, 1) > DOCCAM_VERSION_NUMBER(1, 0, 0));
    static_assert(DOCCAM_VERSION_NUMBER(1, 1, 0) > DOCCAM_VERSION_NUMBER(1, 0, 999));
    static_assert(DOCCAM_VERSION_NUMBER(2, 0, 0) > DOCCAM_VERSION_NUMBER(1, 999, 999));
    EXPECT_EQ(DOCCAM_VERSION_NUMBER(1, 2, 3), 1002003);
}

} // namespace
} // namespace doccam::test
