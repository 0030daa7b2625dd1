#pragma once

#include "cli/task.h"

#include <functional>
#include <memory>
#include <vector>

/// What each command does with one device. What can be checked without a device is checked, and
/// files are read, when the maker is made: it throws UsageError then, before anything is sent
/// anywhere. `world` is read when a task is made, so it lives as long as the maker.
using TaskMaker = std::function<std::unique_ptr<DeviceTask>(const FoundDevice &found)>;

TaskMaker getTasks(const TaskWorld &world);
TaskMaker setTasks(const TaskWorld &world);
TaskMaker saveTasks(const TaskWorld &world, const std::vector<Device> &devices);
TaskMaker diffTasks(const TaskWorld &world, const std::vector<Device> &devices);
TaskMaker applyTasks(const TaskWorld &world, const std::vector<Device> &devices);
TaskMaker resetTasks(const TaskWorld &world);
TaskMaker watchTasks(const TaskWorld &world);
TaskMaker moduleShowTasks(const TaskWorld &world);
TaskMaker moduleSetTasks(const TaskWorld &world, const std::vector<Device> &devices);
