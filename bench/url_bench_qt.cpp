// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Qt's part of url_bench.
#include <KWToolkit/url/NSDictionary+GTMNSDictionaryURLArgumentsAdditions.h>
#include <bench/UrlTexts.h>

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QUrl>
#include <QUrlQuery>
#include <benchmark/benchmark.h>

namespace {

using namespace kw;

void escapeQt(benchmark::State& state) {
    const auto text =
        QString::fromStdString(bench::mixedText(static_cast<std::size_t>(state.range())));
    for (auto _ : state)
        benchmark::DoNotOptimize(QUrl::toPercentEncoding(text));
}
void escapeQtBytes(benchmark::State& state) {
    const auto text =
        QByteArray::fromStdString(bench::mixedText(static_cast<std::size_t>(state.range())));
    for (auto _ : state)
        benchmark::DoNotOptimize(text.toPercentEncoding());
}
void unescapeQt(benchmark::State& state) {
    const auto text =
        QByteArray::fromStdString(bench::escapedText(static_cast<std::size_t>(state.range())));
    for (auto _ : state)
        benchmark::DoNotOptimize(QUrl::fromPercentEncoding(text));
}
void unescapeQtBytes(benchmark::State& state) {
    const auto text =
        QByteArray::fromStdString(bench::escapedText(static_cast<std::size_t>(state.range())));
    for (auto _ : state)
        benchmark::DoNotOptimize(QByteArray::fromPercentEncoding(text));
}

void parseQt(benchmark::State& state) {
    const auto query = QString::fromStdString(gtm_httpArgumentsString(bench::fiftyPairs()));
    for (auto _ : state) {
        QMap<QString, QString> arguments;
        for (const auto& [key, value] : QUrlQuery(query).queryItems(QUrl::FullyDecoded))
            arguments.insert(key, value);
        benchmark::DoNotOptimize(arguments);
    }
}
void buildQt(benchmark::State& state) {
    QMap<QString, QString> arguments;
    for (const auto& [key, value] : bench::fiftyPairs())
        arguments.insert(QString::fromStdString(key), QString::fromStdString(value));
    for (auto _ : state) {
        QUrlQuery query;
        for (auto place = arguments.cbegin(); place != arguments.cend(); ++place)
            query.addQueryItem(place.key(), place.value());
        benchmark::DoNotOptimize(query.toString(QUrl::FullyEncoded));
    }
}

#define KW_TEXT_BENCHMARK(name) BENCHMARK(name)->Arg(1 << 10)->Arg(1 << 20)
KW_TEXT_BENCHMARK(escapeQt);
KW_TEXT_BENCHMARK(escapeQtBytes);
KW_TEXT_BENCHMARK(unescapeQt);
KW_TEXT_BENCHMARK(unescapeQtBytes);
BENCHMARK(parseQt);
BENCHMARK(buildQt);

} // namespace
