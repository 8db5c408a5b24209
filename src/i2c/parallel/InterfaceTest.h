// The interface test: the adapter's lines driven by hand or in turn, and what they read back.
#pragma once

#include <chrono>
#include <optional>

#include "i2c/parallel/AdapterDiagnosis.h"
#include "i2c/parallel/mI2Ccode.h"

namespace tarnwell {

/// The time between two ticks of the automatic test.
inline constexpr std::chrono::milliseconds kAutoTestInterval{500};

/// Sensing here is raw: a set input bit is a high line.
///
/// The port is claimed from PreCheck to Close.
class InterfaceTest {
  public:
    InterfaceTest(mI2Ccode& i2c, const Port& port, StatusBar& statusBar, User& user);
    ~InterfaceTest() { Close(); }
    InterfaceTest(const InterfaceTest&) = delete;
    InterfaceTest& operator=(const InterfaceTest&) = delete;

    /// Whether the test may be opened, which no bus on the adapter may hinder. Tells the user if
    /// not.
    [[nodiscard]] bool PreCheck();

    /// Releases both lines; nothing is known of them yet.
    void Open();

    void DriveClock(Level level);
    void DriveData(Level level);

    void StartAutoTest() { autoTestRuns_ = true; }

    /// Half a cycle: drives the lines opposite to each other and checks the one that rose.
    void Tick();

    /// Ends the automatic test and releases both lines. The result text stays.
    void StopAutoTest();

    /// Stops everything, releases both lines, then the port. Harmless when nothing is open.
    void Close();

    bool AutoTestRuns() const { return autoTestRuns_; }

    /// The levels last sensed.
    Level ClockIndicator() const { return sensed_.scl; }
    Level DataIndicator() const { return sensed_.sda; }

    /// "OK", "Err: SCL" or "Err: SDA"; empty before the first check.
    std::string_view ResultText() const { return result_; }

    /// What is probably wrong and what to change; empty when there is nothing to say.
    std::string Diagnosis() const;

  private:
    void SetClock(Level level);
    void SetData(Level level);
    void ReleaseLines();
    void UpdateIndicators();
    void CheckClockLine();
    void CheckDataLine();

    mI2Ccode& i2c_;
    const Port& port_;
    StatusBar& statusBar_;
    User& user_;
    std::optional<BusClaim> claim_;
    bool autoTestRuns_ = false;
    LineLevels driven_;
    LineLevels sensed_;
    std::string_view result_;
    AdapterDiagnosis diagnosis_;
};

}  // namespace tarnwell
