// Archived rich text of 100 runs: reading and writing.
#include "store/archive/text_archive.h"

#include <benchmark/benchmark.h>

using namespace tockwise;

namespace {

constexpr int kRuns = 100;

// As somebody writes who likes formatting: each run differs from the one before, and what they
// have in common is in ten varieties.
AttributedText formattedText() {
  AttributedText text;
  for (int i = 0; i < kRuns; ++i) {
    TextAttributes attributes;
    attributes.font = TextFont{
        i % 2 ? QStringLiteral("Helvetica") : QStringLiteral("Helvetica-Bold"), 12.0 + i % 5, {}};
    attributes.color = TextColor{0xff000000U | quint32(i % 10) * 20, false, {}};
    attributes.paragraph = ParagraphStyle();
    attributes.paragraph->alignment = TextAlignment::Natural;
    attributes.paragraph->headIndent = 10.0 * (i / 10);
    attributes.paragraph->tabStops = std::vector<TextTab>{{36, 0, {}}, {72, 0, {}}};
    if (i % 3 == 0)
      attributes.underline = 1;
    text.append(QStringLiteral("run number %1 of many\n").arg(i), attributes);
  }
  return text;
}

void archiveDecode(benchmark::State& state) {
  const QByteArray archive = archiveText(formattedText());
  for (auto _ : state)
    benchmark::DoNotOptimize(unarchiveText(archive));
  state.counters["bytes"] = double(archive.size());
}
BENCHMARK(archiveDecode)->Unit(benchmark::kMicrosecond);

// A text that was made here.
void archiveEncode(benchmark::State& state) {
  const AttributedText text = formattedText();
  for (auto _ : state)
    benchmark::DoNotOptimize(archiveText(text));
}
BENCHMARK(archiveEncode)->Unit(benchmark::kMicrosecond);

// A text that was read: its objects are copied.
void archiveEncodeAgain(benchmark::State& state) {
  const auto read = unarchiveText(archiveText(formattedText()));
  for (auto _ : state)
    benchmark::DoNotOptimize(archiveText(read->text));
}
BENCHMARK(archiveEncodeAgain)->Unit(benchmark::kMicrosecond);

} // namespace
