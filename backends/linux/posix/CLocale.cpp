// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/CLocale.h>

#include <backends/linux/posix/LocaleName.h>

#include <iconv.h>
#include <langinfo.h>

#include <array>
#include <climits>
#include <clocale>
#include <memory>
#include <optional>
#include <type_traits>

namespace kw {

namespace {

template <auto destroy>
struct Deleter {
    void operator()(auto* object) const { destroy(object); }
};
using LocaleHandle = std::unique_ptr<std::remove_pointer_t<locale_t>, Deleter<&::freelocale>>;

/// Nothing where the text cannot be converted, or is longer than a separator.
std::optional<std::string> inUTF8(std::string text, const char* encoding) {
    auto* const conversion = ::iconv_open("UTF-8", encoding);
    if (conversion == iconv_t(-1)) // NOLINT(performance-no-int-to-ptr): it is how it says so
        return std::nullopt;
    std::array<char, 64> converted;
    char* from = text.data();
    char* to = converted.data();
    std::size_t left = text.size();
    std::size_t room = converted.size();
    const bool isDone = ::iconv(conversion, &from, &left, &to, &room) != std::size_t(-1);
    ::iconv_close(conversion);
    return isDone ? std::optional(std::string(converted.data(), to)) : std::nullopt;
}

/// The sizes of a C library's list, in which a byte out of range ends all groups.
std::vector<int> groupSizes(const char* list) {
    std::vector<int> sizes;
    for (; *list > 0 && *list != CHAR_MAX; ++list)
        sizes.push_back(*list);
    if (*list != 0)
        sizes.push_back(0);
    return sizes;
}

NumberSeparators separatorsOf(const std::string& name) {
    NumberSeparators none {.grouping = "", .groupSizes = {}};
    const LocaleHandle locale(
        ::newlocale(LC_NUMERIC_MASK | LC_CTYPE_MASK, name.c_str(), locale_t(nullptr)));
    if (!locale)
        return none;
    const auto text = [&](nl_item item) {
        return inUTF8(::nl_langinfo_l(item, locale.get()), ::nl_langinfo_l(CODESET, locale.get()));
    };
    const auto decimal = text(RADIXCHAR);
    const auto grouping = text(THOUSEP);
    if (!decimal || decimal->empty() || !grouping)
        return none;
    return {*decimal, *grouping, groupSizes(::nl_langinfo_l(GROUPING, locale.get()))};
}

} // namespace

CLocale::CLocale(const Environment& environment)
    : m_separators(separatorsOf(localeOf("LC_NUMERIC", environment))) { }

} // namespace kw
