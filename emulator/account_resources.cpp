#include "emulator/account_resources.hpp"

#include <utility>

#include "emulator/redfish_types.hpp"
#include "emulator/resource_builder.hpp"

namespace emulator {

using nlohmann::json;

namespace {

const std::string kAccounts = std::string(AccountResources::kRoot) + "/Accounts";
const std::string kRoles = std::string(AccountResources::kRoot) + "/Roles";

// The predefined roles and their privileges, as the Redfish standard names them.
const std::vector<std::pair<std::string, std::vector<std::string>>>& PredefinedRoles() {
    static const std::vector<std::pair<std::string, std::vector<std::string>>> roles = {
        {"Administrator",
         {"Login", "ConfigureManager", "ConfigureUsers", "ConfigureSelf", "ConfigureComponents"}},
        {"Operator", {"Login", "ConfigureSelf", "ConfigureComponents"}},
        {"ReadOnly", {"Login", "ConfigureSelf"}}};
    return roles;
}

} // namespace

std::optional<json> AccountResources::Build(const std::vector<std::string>& s) const {
    if (s.size() == 3) {
        return Service();
    }
    if (s[3] == "Accounts") {
        if (s.size() == 4) {
            return ResourceBuilder::Collection(kAccounts, RedfishTypes::kManagerAccountCollection,
                                               "Accounts Collection", {kAccounts + "/1"});
        }
        if (s.size() == 5 && s[4] == "1") {
            return Account();
        }
        return std::nullopt;
    }
    if (s[3] == "Roles") {
        if (s.size() == 4) {
            std::vector<std::string> members;
            for (const auto& role : PredefinedRoles()) {
                std::string uri = kRoles;
                uri += "/";
                uri += role.first;
                members.push_back(uri);
            }
            return ResourceBuilder::Collection(kRoles, RedfishTypes::kRoleCollection,
                                               "Roles Collection", members);
        }
        if (s.size() == 5) {
            return Role(s[4]);
        }
    }
    return std::nullopt;
}

json AccountResources::Service() const {
    json service = ResourceBuilder::Head(kRoot, RedfishTypes::kAccountService);
    service["Id"] = "AccountService";
    service["Name"] = "Account Service";
    service["ServiceEnabled"] = true;
    service["Status"] = {{"State", "Enabled"}, {"Health", "OK"}};
    service["Accounts"] = ResourceBuilder::Reference(kAccounts);
    service["Roles"] = ResourceBuilder::Reference(kRoles);
    return service;
}

json AccountResources::Account() const {
    json account = ResourceBuilder::Head(kAccounts + "/1", RedfishTypes::kManagerAccount);
    account["Id"] = "1";
    account["Name"] = "User Account";
    account["UserName"] = bmc_.user;
    // Intended: the password is never shown, as the standard asks of every service.
    account["Password"] = nullptr;
    account["RoleId"] = "Administrator";
    account["AccountTypes"] = json::array({"Redfish"});
    account["Enabled"] = true;
    account["Locked"] = false;
    account["Links"] = {{"Role", ResourceBuilder::Reference(kRoles + "/Administrator")}};
    return account;
}

std::optional<json> AccountResources::Role(const std::string& id) {
    for (const auto& [name, privileges] : PredefinedRoles()) {
        if (name == id) {
            std::string uri = kRoles;
            uri += "/";
            uri += name;
            json role = ResourceBuilder::Head(uri, RedfishTypes::kRole);
            role["Id"] = name;
            role["Name"] = name + " Role";
            role["RoleId"] = name;
            role["IsPredefined"] = true;
            role["AssignedPrivileges"] = privileges;
            return role;
        }
    }
    return std::nullopt;
}

} // namespace emulator
