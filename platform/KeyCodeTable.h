#pragma once
// The one fixed table from the stored, positional virtual key codes to X key codes (evdev scan code + 8).
// Stored shortcuts name a key by its place on the board, so they survive a change of keyboard layout.
#include <optional>
#include <utility>

namespace kro {

inline constexpr std::pair<int, int> kVirtualToXKeyCode[] = {
    {0, 38},   {1, 39},   {2, 40},   {3, 41},   {4, 43},   {5, 42},   {6, 52},   {7, 53},   {8, 54},
    {9, 55},   {10, 49},  {11, 56},  {12, 24},  {13, 25},  {14, 26},  {15, 27},  {16, 29},  {17, 28},
    {18, 10},  {19, 11},  {20, 12},  {21, 13},  {22, 15},  {23, 14},  {24, 21},  {25, 18},  {26, 16},
    {27, 20},  {28, 17},  {29, 19},  {30, 35},  {31, 32},  {32, 30},  {33, 34},  {34, 31},  {35, 33},
    {36, 36},  {37, 46},  {38, 44},  {39, 48},  {40, 45},  {41, 47},  {42, 51},  {43, 59},  {44, 61},
    {45, 57},  {46, 58},  {47, 60},  {48, 23},  {49, 65},  {50, 94},  {51, 22},  {53, 9},   {76, 104},
    {96, 71},  {97, 72},  {98, 73},  {99, 69},  {100, 74}, {101, 75}, {103, 95}, {105, 191}, {107, 192},
    {109, 76}, {111, 96}, {113, 193}, {114, 118}, {115, 110}, {116, 112}, {117, 119}, {118, 70}, {119, 115},
    // 121 is labelled F2 in the key label table, so it grabs F2.
    {121, 68}, {122, 67}, {123, 113}, {124, 114}, {125, 116}, {126, 111},
};

inline std::optional<int> xKeyCode(int virtualCode) {
    for (const auto& [code, xCode] : kVirtualToXKeyCode) {
        if (code == virtualCode) return xCode;
    }
    return std::nullopt;
}

inline std::optional<int> virtualKeyCode(int xCode) {
    for (const auto& [code, x] : kVirtualToXKeyCode) {
        if (x == xCode) return code;
    }
    return std::nullopt;
}

}  // namespace kro
