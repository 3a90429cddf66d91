#include "emulator/session_store.hpp"

#include <array>
#include <random>

#include "emulator/redfish_errors.hpp"
#include "emulator/request_text.hpp"

namespace emulator {

SessionStore::SessionStore() {
    std::random_device device;
    seed_ = (static_cast<unsigned long long>(device()) << 32U) ^ device();
}

std::string SessionStore::RandomHex() {
    // A fresh engine per value, seeded from the process seed and a counter: tokens and ids
    // differ between runs and never repeat within one.
    std::seed_seq seq{seed_, ++counter_};
    std::mt19937_64 engine(seq);
    static constexpr std::array<char, 16> kDigits{'0', '1', '2', '3', '4', '5', '6', '7',
                                                  '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};
    std::string text;
    for (int part = 0; part < 2; ++part) {
        unsigned long long value = engine();
        for (int digit = 0; digit < 16; ++digit) {
            text.push_back(kDigits.at(value & 0xFU));
            value >>= 4U;
        }
    }
    return text;
}

std::string SessionStore::Open(const std::string& user, std::string& token) {
    Session session{RandomHex(), user};
    token = RandomHex();
    by_token_[token] = session;
    return session.id;
}

std::optional<SessionStore::Session> SessionStore::FindByToken(const std::string& token) const {
    const auto found = by_token_.find(token);
    if (token.empty() || found == by_token_.end()) {
        return std::nullopt;
    }
    return found->second;
}

std::optional<SessionStore::Session> SessionStore::FindById(const std::string& id) const {
    for (const auto& [token, session] : by_token_) {
        if (session.id == id) {
            return session;
        }
    }
    return std::nullopt;
}

bool SessionStore::Close(const std::string& id) {
    for (auto entry = by_token_.begin(); entry != by_token_.end(); ++entry) {
        if (entry->second.id == id) {
            by_token_.erase(entry);
            return true;
        }
    }
    return false;
}

std::vector<SessionStore::Session> SessionStore::All() const {
    std::vector<Session> sessions;
    for (const auto& [token, session] : by_token_) {
        sessions.push_back(session);
    }
    return sessions;
}

std::optional<HttpResponse> SessionStore::Check(
    const HttpRequest& request,
    const std::function<bool(const std::string& user, const std::string& password)>& admits) const {
    const std::string token = request.Header("X-Auth-Token");
    if (!token.empty()) {
        if (FindByToken(token)) {
            return std::nullopt;
        }
        return RedfishErrors::BadToken();
    }
    if (const std::optional<std::string> pair =
            RequestText::BasicCredentials(request.Header("Authorization"))) {
        const std::size_t colon = pair->find(':');
        if (colon != std::string::npos && admits(pair->substr(0, colon), pair->substr(colon + 1))) {
            return std::nullopt;
        }
        return RedfishErrors::BadCredentials();
    }
    return RedfishErrors::NoSession();
}

} // namespace emulator
