// The sync's work on the main thread with a library of 10,000 colours: decoding the record read from the
// server, settling it against the library (the field-wise comparison of every palette), and writing the
// library into the record before a push.
#include <benchmark/benchmark.h>

#include "cloud/CloudRecord.h"
#include "cloud/UserUpdate.h"
#include "library/User.h"
#include "platform/testing/TestEnvironment.h"

namespace {

constexpr int kPalettes = 20;
constexpr int kColorsPerPalette = 500;  // 10,000 colours in all

struct SyncFixture {
    kro::testing::TestEnvironment env;
    kro::User user;
    kro::CloudRecord record = kro::CloudRecord::make("bench");

    SyncFixture() {
        user.palettes.clear();
        for (int p = 0; p < kPalettes; ++p) {
            std::vector<kro::ColorRef> colors;
            for (int c = 0; c < kColorsPerPalette; ++c) {
                const double t = static_cast<double>(c) / kColorsPerPalette;
                colors.push_back(kro::Color::make(t, 1 - t, 0.5, 1, "Colour " + std::to_string(c)));
            }
            auto palette = std::make_shared<kro::Palette>();
            palette->name = "Palette " + std::to_string(p);
            palette->colors = std::move(colors);
            user.palettes.push_back(palette);
        }
        user.updatedAt = "2026-01-01T00:00:00Z";
        record.writeFields(user);
        // The server's copy is later and holds the same palettes: the comparison walks every colour.
        record.document["updatedAt"] = "2026-01-02T00:00:00Z";
    }
};

void BM_DecodeRecord(benchmark::State& state) {
    SyncFixture fixture;
    const std::string bytes = kro::compactText(fixture.record.document);
    for (auto _ : state) {
        auto fields = kro::decodeCloudRecord(kro::parseCloudDocument(bytes));
        benchmark::DoNotOptimize(fields);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(BM_DecodeRecord)->Unit(benchmark::kMillisecond);

void BM_SettleRecordWithSamePalettes(benchmark::State& state) {
    SyncFixture fixture;
    for (auto _ : state) {
        fixture.user.updatedAt = "2026-01-01T00:00:00Z";
        const auto result = kro::update(fixture.user, fixture.record, false, false, false, false, "bench", "bench", 1);
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(BM_SettleRecordWithSamePalettes)->Unit(benchmark::kMillisecond);

void BM_WriteRecordForPush(benchmark::State& state) {
    SyncFixture fixture;
    for (auto _ : state) {
        kro::CloudRecord record = kro::CloudRecord::make("bench");
        record.writeFields(fixture.user);
        auto body = kro::compactText(record.document);
        benchmark::DoNotOptimize(body);
    }
}
BENCHMARK(BM_WriteRecordForPush)->Unit(benchmark::kMillisecond);

}  // namespace
