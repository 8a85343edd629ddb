// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessAuthorizationService.h>

namespace kw {

namespace {

class HeadlessAuthorization final : public Authorization {
public:
    explicit HeadlessAuthorization(HeadlessAuthorizationService& service)
        : m_service(service) {
        ++m_service.living;
    }
    ~HeadlessAuthorization() override { --m_service.living; }

    AuthorizationStatus copyRights(const std::string& right, std::uint32_t flags) override {
        m_service.askedFlags.push_back(flags);
        return right == kAuthorizationRightExecute ? m_service.status : AuthorizationStatus::denied;
    }

    bool executeWithPrivileges(
        const std::string& program, const std::vector<std::string>& arguments) override {
        std::vector<std::string> run {program};
        run.insert(run.end(), arguments.begin(), arguments.end());
        m_service.runs.push_back(std::move(run));
        return m_service.starts;
    }

    std::optional<int> wait() override {
        return m_service.run ? m_service.run(m_service.runs.back()) : 0;
    }

private:
    HeadlessAuthorizationService& m_service;
};

} // namespace

std::unique_ptr<Authorization> HeadlessAuthorizationService::create() {
    return isAvailable ? std::make_unique<HeadlessAuthorization>(*this) : nullptr;
}

} // namespace kw
