// Sentences about a file that stands for standard input or output.
#pragma once

#include "host/failure.h"

#include <string>

namespace doccam::host {

// The sentence with words, such as "standard input", where it names the file at path.
std::string inStreamWords(std::string sentence, const std::string& path, const std::string& words);

// What work returns. A Failure that it throws has words where it names the file at path.
template <typename Work>
auto withStreamWords(const std::string& path, const std::string& words, const Work& work) {
    try {
        return work();
    } catch (const Interruption&) {
        throw;
    } catch (const Failure& failure) {
        throw Failure(failure.code(), inStreamWords(failure.what(), path, words));
    }
}

} // namespace doccam::host
