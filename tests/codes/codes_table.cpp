#include "codes_table.h"

#include <algorithm>
#include <sstream>

namespace doccam::test {

namespace {

std::string counts(const CodeCell& cell, int ReaderTally::*count) {
    std::string text;
    for (const ReaderTally& reader : cell.readers) {
        text += (text.empty() ? "" : " / ") + std::to_string(reader.*count);
    }
    return text;
}

} // namespace

CodesTable::CodesTable(const std::vector<CodeTask>& tasks,
                       const std::vector<CodeMeasure>& measures) {
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        if (entries_.empty() || entries_.back().kind != tasks[i].kind ||
            entries_.back().series != tasks[i].series) {
            entries_.push_back({tasks[i].kind, tasks[i].series, {}});
        }
        entries_.back().cell += measures[i].cell;
    }
}

const CodesTable::Entry* CodesTable::find(const CodeKind& kind, const CodeSeries& series) const {
    const auto entry = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& one) {
        return one.kind == &kind && one.series == &series;
    });
    return entry != entries_.end() ? &*entry : nullptr;
}

std::vector<const CodeSeries*> CodesTable::columns(bool photographed) const {
    std::vector<const CodeSeries*> columns;
    for (const CodeSeries& series : codeSeries()) {
        const bool measured =
            std::any_of(entries_.begin(), entries_.end(),
                        [&](const Entry& entry) { return entry.series == &series; });
        if (measured && series.photographed == photographed) {
            columns.push_back(&series);
        }
    }
    return columns;
}

std::string CodesTable::row(const CodeKind& kind,
                            const std::vector<const CodeSeries*>& columns) const {
    std::ostringstream line;
    line << "| " << kind.name << " |";
    CodeCell all;
    bool measured = false;
    for (const CodeSeries* series : columns) {
        const Entry* entry = find(kind, *series);
        if (entry == nullptr) {
            line << " |";
            continue;
        }
        measured = true;
        line << ' ' << counts(entry->cell, &ReaderTally::read) << " |";
        all += entry->cell;
    }
    line << ' ' << counts(all, &ReaderTally::wrong) << " |\n";
    return measured ? line.str() : "";
}

std::string CodesTable::text(bool photographed) const {
    const std::vector<const CodeSeries*> series = columns(photographed);
    if (series.empty()) {
        return "";
    }
    std::string names = "| kind |";
    std::string rule = "|---|";
    for (const CodeSeries* one : series) {
        const auto entry = std::find_if(entries_.begin(), entries_.end(),
                                        [&](const Entry& each) { return each.series == one; });
        names += " " + one->name + ", of " + std::to_string(entry->cell.codes) + " |";
        rule += "---|";
    }
    std::string rows;
    for (const CodeKind& kind : codeKinds()) {
        rows += row(kind, series);
    }
    return names + " wrong |\n" + rule + "---|\n" + rows;
}

std::vector<std::string> CodesTable::failures() const {
    std::vector<std::string> failures;
    for (const Entry& entry : entries_) {
        const std::string what = complaint(entry.cell);
        if (!what.empty()) {
            failures.push_back(entry.kind->name + ", " + entry.series->name + ": " + what);
        }
    }
    return failures;
}

} // namespace doccam::test
