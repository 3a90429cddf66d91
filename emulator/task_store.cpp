#include "emulator/task_store.hpp"

#include "emulator/redfish_types.hpp"
#include "emulator/resource_builder.hpp"

namespace emulator {

int TaskStore::Add(const std::string& volume_uri) {
    const int id = next_id_++;
    tasks_.push_back(Task{id, volume_uri});
    while (tasks_.size() > kKept) {
        tasks_.pop_front();
    }
    return id;
}

std::optional<TaskStore::Task> TaskStore::Find(int id) const {
    for (const Task& task : tasks_) {
        if (task.id == id) {
            return task;
        }
    }
    return std::nullopt;
}

std::string TaskStore::Uri(int id) {
    return "/redfish/v1/TaskService/Tasks/" + std::to_string(id);
}

nlohmann::json TaskStore::Resource(const Task& task) {
    const std::string id = std::to_string(task.id);
    nlohmann::json body = ResourceBuilder::Head(Uri(task.id), RedfishTypes::kTask);
    body["Id"] = id;
    body["Name"] = "Volume creation " + id;
    body["TaskState"] = "Completed";
    body["TaskStatus"] = "OK";
    body["PercentComplete"] = 100;
    body["TaskMonitor"] = Uri(task.id) + "/Monitor";
    body["Messages"] = nlohmann::json::array(
        {{{"@odata.type", RedfishTypes::kMessage},
          {"MessageId", "TaskEvent.1.0.TaskCompletedOK"},
          {"Message", "The task with Id '" + id + "' has completed."},
          {"MessageArgs", nlohmann::json::array({id})},
          // Only the current property: the deprecated Severity is for error bodies, where old
          // clients still look for it.
          {"MessageSeverity", "OK"},
          {"Oem", {{"Raidcfg", {{"@odata.type", RedfishTypes::kOemMessage}, {"Code", 0}}}}}}});
    body["Oem"] = {
        {"Raidcfg",
         {{"@odata.type", RedfishTypes::kOemTask},
          {"Volume", task.volume_uri.empty() ? nlohmann::json(nullptr)
                                             : ResourceBuilder::Reference(task.volume_uri)}}}};
    return body;
}

} // namespace emulator
