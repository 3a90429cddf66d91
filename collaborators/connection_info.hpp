#pragma once

#include <memory>

namespace QuillonConnection {

// What a fetched connection carries; defined by the implementation that made it.
class Connection {
public:
    virtual ~Connection() = default;
};

// An opaque connection handle with value semantics: copies share one connection. The service
// builds it empty, lets a fetch fill it and hands it to backend constructors.
class ConnectionInfo {
public:
    ConnectionInfo() = default;
    explicit ConnectionInfo(std::shared_ptr<Connection> connection)
        : connection_(std::move(connection)) {}

    const std::shared_ptr<Connection>& connection() const { return connection_; }
    bool empty() const { return connection_ == nullptr; }

private:
    std::shared_ptr<Connection> connection_;
};

} // namespace QuillonConnection
