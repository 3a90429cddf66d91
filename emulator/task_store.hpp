#pragma once

#include <deque>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace emulator {

// The volume creation tasks of the emulator, in memory. A task is complete when it is made (the
// volume is created before the 202 is sent); its monitor then answers with the volume.
class TaskStore {
public:
    static constexpr std::size_t kKept = 64;

    struct Task {
        int id = 0;
        std::string volume_uri; // the created volume
    };

    // Records a completed task; the oldest task is forgotten beyond kKept.
    int Add(const std::string& volume_uri);
    std::optional<Task> Find(int id) const;
    std::deque<Task> All() const { return tasks_; }

    // The Task resource of a task (/redfish/v1/TaskService/Tasks/{n}).
    static nlohmann::json Resource(const Task& task);
    static std::string Uri(int id);

private:
    std::deque<Task> tasks_;
    int next_id_ = 1;
};

} // namespace emulator
