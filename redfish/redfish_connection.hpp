#pragma once

#include <memory>
#include <string>

#include "collaborators/connection_info.hpp"
#include "redfish/redfish_client.hpp"
#include "redfish/storage_tree_reader.hpp"

namespace redfish {

// A connection to a BMC as the connection library hands it out: every channel (CIM, SSH, REST)
// reaches the BMC through its Redfish service. All connections of one run share one client
// (one session, one read cache) and one reader of the storage tree.
class RedfishConnection : public QuillonConnection::Connection {
public:
    RedfishConnection(std::string channel, std::shared_ptr<RedfishClient> client,
                      std::shared_ptr<StorageTreeReader> tree)
        : channel_(std::move(channel)), client_(std::move(client)), tree_(std::move(tree)) {}

    const std::string& channel() const { return channel_; } // "cim", "ssh" or "rest"
    RedfishClient& client() const { return *client_; }
    StorageTreeReader& tree() const { return *tree_; }
    // The reader, for drivers that outlive the connection handle they were made from.
    const std::shared_ptr<StorageTreeReader>& shared_tree() const { return tree_; }

    // The Redfish connection behind a connection handle; nullptr when it holds another kind.
    static RedfishConnection* Of(const QuillonConnection::ConnectionInfo& info) {
        return dynamic_cast<RedfishConnection*>(info.connection().get());
    }

private:
    std::string channel_;
    std::shared_ptr<RedfishClient> client_;
    std::shared_ptr<StorageTreeReader> tree_;
};

} // namespace redfish
