// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Escapes and queries beside libcurl, GLib, Boost.URL and, where it is built, Qt
// (url_bench_qt.cpp). Ours alone checks that texts are valid UTF-8.
#include <KWToolkit/url/KWUrlDelegateHelper.h>
#include <KWToolkit/url/NSDictionary+GTMNSDictionaryURLArgumentsAdditions.h>
#include <KWToolkit/url/NSString+GTMNSStringURLArgumentsAdditions.h>
#include <KWToolkit/url/NSURL+Encode.h>
#include <bench/RatioReporter.h>
#include <bench/UrlTexts.h>

#include <benchmark/benchmark.h>
#include <boost/url.hpp>
#include <curl/curl.h>
#include <glib.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace kw;
namespace urls = boost::urls;

const std::string query = gtm_httpArgumentsString(bench::fiftyPairs());

void reportBytes(benchmark::State& state, const std::string& text) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

template <class Function>
void onMixedText(benchmark::State& state, Function function) {
    const std::string text = bench::mixedText(static_cast<std::size_t>(state.range()));
    for (auto _ : state)
        benchmark::DoNotOptimize(function(text));
    reportBytes(state, text);
}

template <class Function>
void onEscapedText(benchmark::State& state, Function function) {
    const std::string text = bench::escapedText(static_cast<std::size_t>(state.range()));
    for (auto _ : state)
        benchmark::DoNotOptimize(function(text));
    reportBytes(state, text);
}

using GText = std::unique_ptr<char, decltype(&g_free)>;
using CurlText = std::unique_ptr<char, decltype(&curl_free)>;
using GTable = std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)>;

GTable parsedByGLib() {
    return {g_uri_parse_params(query.data(), static_cast<gssize>(query.size()), "&",
                G_URI_PARAMS_WWW_FORM, nullptr),
        g_hash_table_unref};
}

void escapeOurs(benchmark::State& state) { onMixedText(state, gtm_stringByEscapingForURLArgument); }
void escapeTable(benchmark::State& state) { onMixedText(state, urlEncode); }
void escapeCurl(benchmark::State& state) {
    onMixedText(state, [](const std::string& text) {
        return CurlText(
            curl_easy_escape(nullptr, text.data(), static_cast<int>(text.size())), curl_free);
    });
}
void escapeGLib(benchmark::State& state) {
    onMixedText(state, [](const std::string& text) {
        return GText(g_uri_escape_string(text.data(), nullptr, false), g_free);
    });
}
void escapeBoost(benchmark::State& state) {
    onMixedText(
        state, [](const std::string& text) { return urls::encode(text, urls::unreserved_chars); });
}

void unescapeOurs(benchmark::State& state) {
    onEscapedText(state, gtm_stringByUnescapingFromURLArgument);
}
void unescapeTable(benchmark::State& state) { onEscapedText(state, urlDecode); }
void unescapeCurl(benchmark::State& state) {
    onEscapedText(state, [](const std::string& text) {
        int size = 0;
        return CurlText(
            curl_easy_unescape(nullptr, text.data(), static_cast<int>(text.size()), &size),
            curl_free);
    });
}
void unescapeGLib(benchmark::State& state) {
    onEscapedText(state, [](const std::string& text) {
        return GText(g_uri_unescape_string(text.data(), nullptr), g_free);
    });
}
void unescapeBoost(benchmark::State& state) {
    onEscapedText(
        state, [](const std::string& text) { return urls::pct_string_view(text).decode(); });
}

void parseOurs(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(gtm_dictionaryWithHttpArgumentsString(query));
}
void parseGLib(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(parsedByGLib());
}
void parseBoost(benchmark::State& state) {
    for (auto _ : state) {
        std::map<std::string, std::string> arguments;
        for (const urls::param param : urls::params_view(query))
            arguments.emplace(param.key, param.value);
        benchmark::DoNotOptimize(arguments);
    }
}

void buildOurs(benchmark::State& state) {
    const auto arguments = bench::fiftyPairs();
    for (auto _ : state)
        benchmark::DoNotOptimize(gtm_httpArgumentsString(arguments));
}
void buildGLib(benchmark::State& state) {
    const GTable arguments = parsedByGLib();
    for (auto _ : state) {
        GString* built = g_string_new(nullptr);
        GHashTableIter place;
        gpointer key = nullptr, value = nullptr;
        g_hash_table_iter_init(&place, arguments.get());
        while (g_hash_table_iter_next(&place, &key, &value)) {
            if (built->len > 0)
                g_string_append_c(built, '&');
            g_string_append_uri_escaped(built, static_cast<const char*>(key), nullptr, false);
            g_string_append_c(built, '=');
            g_string_append_uri_escaped(built, static_cast<const char*>(value), nullptr, false);
        }
        benchmark::DoNotOptimize(built);
        g_string_free(built, true);
    }
}
void buildBoost(benchmark::State& state) {
    const auto arguments = bench::fiftyPairs();
    for (auto _ : state) {
        urls::url url;
        for (const auto& [key, value] : arguments)
            url.params().append({key, value});
        benchmark::DoNotOptimize(url);
    }
}

/// As many bytes of separators, plain or escaped, which take the most work.
void cutUrl(benchmark::State& state, std::string_view separator) {
    std::string url = "app://";
    while (url.size() < static_cast<std::size_t>(state.range()))
        url += separator;
    for (auto _ : state)
        benchmark::DoNotOptimize(KWUrlDelegateHelper::parametersFromString(url));
    reportBytes(state, url);
}
void cutSeparators(benchmark::State& state) { cutUrl(state, "&!p!&"); }
void cutEscapedSeparators(benchmark::State& state) { cutUrl(state, "%26%21p%21%26"); }

#define KW_TEXT_BENCHMARK(name) BENCHMARK(name)->Arg(1 << 10)->Arg(1 << 20)
KW_TEXT_BENCHMARK(escapeOurs);
KW_TEXT_BENCHMARK(escapeTable);
KW_TEXT_BENCHMARK(escapeCurl);
KW_TEXT_BENCHMARK(escapeGLib);
KW_TEXT_BENCHMARK(escapeBoost);
KW_TEXT_BENCHMARK(unescapeOurs);
KW_TEXT_BENCHMARK(unescapeTable);
KW_TEXT_BENCHMARK(unescapeCurl);
KW_TEXT_BENCHMARK(unescapeGLib);
KW_TEXT_BENCHMARK(unescapeBoost);
BENCHMARK(parseOurs);
BENCHMARK(parseGLib);
BENCHMARK(parseBoost);
BENCHMARK(buildOurs);
BENCHMARK(buildGLib);
BENCHMARK(buildBoost);
KW_TEXT_BENCHMARK(cutSeparators);
KW_TEXT_BENCHMARK(cutEscapedSeparators);

} // namespace

int main(int argc, char** argv) {
    if (!bench::initializeInTurns(argc, argv, 9, "0.1"))
        return 2;

    bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nHow many times as fast as each:\n");
    const std::string peers[] {"Curl", "GLib", "Boost", "Qt", "QtBytes"};
    for (const std::string operation : {"escape", "unescape"}) {
        for (const std::string size : {"/1048576", "/1024"}) {
            for (const std::string& peer : peers)
                reporter.printRatio(operation + peer + size, operation + "Ours" + size);
        }
    }
    for (const std::string operation : {"parse", "build"}) {
        for (const std::string& peer : peers)
            reporter.printRatio(operation + peer, operation + "Ours");
    }
    std::printf("For 1024 times as much:\n");
    for (const std::string operation : {"cutSeparators", "cutEscapedSeparators"})
        reporter.printRatio(operation + "/1048576", operation + "/1024");
}
