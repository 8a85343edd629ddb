// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/NSAttributedString.h>

#include <algorithm>
#include <utility>

namespace kw {

NSAttributedString::NSAttributedString(std::string string, Attributes attributes)
    : m_string(std::move(string)) {
    if (!m_string.empty())
        m_runs.push_back({wholeRange(), std::move(attributes)});
}

NSAttributedString::Attributes NSAttributedString::attributesAtIndex(std::size_t index) const {
    const auto run = std::ranges::find_if(m_runs, [index](const Run& candidate) {
        return index >= candidate.range.location
            && index - candidate.range.location < candidate.range.length;
    });
    return run == m_runs.end() ? Attributes {} : run->attributes;
}

void NSAttributedString::appendAttributedString(const NSAttributedString& string) {
    for (Run run : std::vector(string.m_runs)) { // may be this one's
        run.range.location += m_string.size();
        m_runs.push_back(std::move(run));
    }
    m_string += string.m_string;
    join();
}

template <class Change>
void NSAttributedString::change(NSRange range, const Change& change) {
    const auto beginning = [this](std::size_t index) {
        index = std::min(index, m_string.size());
        while (index < m_string.size() && (m_string[index] & 0xC0) == 0x80 && index > 0)
            --index;
        return index;
    };
    const std::size_t first = beginning(range.location);
    const std::size_t room = m_string.size() - std::min(range.location, m_string.size());
    const std::size_t end = beginning(range.location + std::min(range.length, room));
    std::vector<Run> runs;
    for (const Run& run : m_runs) {
        const std::size_t runEnd = run.range.location + run.range.length;
        const std::size_t cuts[] {run.range.location, std::clamp(first, run.range.location, runEnd),
            std::clamp(end, run.range.location, runEnd), runEnd};
        for (std::size_t part = 0; part < 3; ++part) {
            if (cuts[part] >= cuts[part + 1])
                continue;
            runs.push_back({{cuts[part], cuts[part + 1] - cuts[part]}, run.attributes});
            if (part == 1)
                change(runs.back().attributes);
        }
    }
    m_runs = std::move(runs);
    join();
}

void NSAttributedString::setAttributes(const Attributes& attributes, NSRange range) {
    change(range, [&](Attributes& changed) { changed = attributes; });
}

void NSAttributedString::setForegroundColor(const std::optional<NSColor>& color, NSRange range) {
    change(range, [&](Attributes& changed) { changed.foregroundColor = color; });
}

void NSAttributedString::fixAttributesInRange(NSRange range) {
    if (range.location >= m_string.size())
        return;
    const std::size_t end =
        std::min(m_string.size(), range.location + std::min(range.length, m_string.size()));
    const std::size_t before =
        range.location == 0 ? std::string::npos : m_string.rfind('\n', range.location - 1);
    for (std::size_t at = before == std::string::npos ? 0 : before + 1; at < end;) {
        const std::size_t next = std::min(m_string.find('\n', at), m_string.size() - 1) + 1;
        const auto style = attributesAtIndex(at).paragraphStyle;
        change({at, next - at}, [&](Attributes& changed) { changed.paragraphStyle = style; });
        at = next;
    }
}

void NSAttributedString::join() {
    std::vector<Run> runs;
    for (Run& run : m_runs) {
        if (!runs.empty() && runs.back().attributes == run.attributes)
            runs.back().range.length += run.range.length;
        else
            runs.push_back(std::move(run));
    }
    m_runs = std::move(runs);
}

} // namespace kw
