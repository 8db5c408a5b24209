// The commands, one file each. Each ends its report.
#pragma once

#include "cli/tools/Device.h"

namespace tarnwell::cli {

// On the device.
void Check(const Arguments& arguments, Device& device, Report& report);
void Read(const Arguments& arguments, Device& device, Report& report);
void Write(const Arguments& arguments, Device& device, Report& report);
void Verify(const Arguments& arguments, Device& device, Report& report);
void Get(const Arguments& arguments, Device& device, Report& report);
void Set(const Arguments& arguments, Device& device, Report& report);
void Peek(const Arguments& arguments, Device& device, Report& report);
void Poke(const Arguments& arguments, Device& device, Report& report);
void CompareWithDevice(const Arguments& arguments, Device& device, Report& report);
void Restore(const Arguments& arguments, Device& device, Report& report);

// On files alone.
void Info(const Arguments& arguments, Report& report);
void Backups(const Arguments& arguments, Report& report);
void CompareFiles(const Arguments& arguments, Report& report);
void GetFromFile(const Arguments& arguments, Report& report);
void SetInFile(const Arguments& arguments, Report& report);

}  // namespace tarnwell::cli
