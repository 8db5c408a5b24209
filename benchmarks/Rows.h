// What ./bench measures, by subject.
#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <string>

#include "Table.h"
#include "names/NamesFile.h"

namespace tarnwell::bench {

enum class Length { Whole, Quick };

/// Reads and writes on the wire, in real time and simulated.
void AddWire(Table& table, Length length);

/// The buffer's checksum and grid, image files, and undo.
void AddArchives(Table& table);

/// The records of sets.
void AddSets(Table& table);

/// The file of a history of 10,000 events, three settings each.
std::string LongHistory();

/// 10,000 names, 5,000 on each EEPROM.
NamesFile ManyNames(const std::string& path);

/// The window; needs the QApplication.
void AddWindow(Table& table);

/// The program itself, started anew.
void AddStartUp(Table& table);

/// The program without a window.
void AddCommandLine(Table& table);

/// A picture on a screen that shows 60 a second.
inline constexpr double kFrame = 1.0 / 60;

template <typename Work>
double SecondsOf(Work work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// The shortest of several times: what the others are longer by was not the work.
template <typename Work>
double BestOf(int times, Work work) {
    double best = SecondsOf(work);
    for (int time = 1; time < times; ++time)
        best = std::min(best, SecondsOf(work));
    return best;
}

/// The least of some times that the processor works at it.
template <typename Work>
double LeastProcessorSeconds(int times, Work work) {
    double least = 1e9;
    for (int time = 0; time < times; ++time) {
        const std::clock_t begin = std::clock();
        work();
        least = std::min(least, static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    }
    return least;
}

}  // namespace tarnwell::bench
