#include "simulator/provider.h"

#include <algorithm>

namespace velclp_sim {

namespace {

std::vector<ProviderFactory>& factories() {
    static std::vector<ProviderFactory> all;
    return all;
}

} // namespace

const Value& Arguments::get(std::string_view name) const {
    static const Value none;
    const auto found = std::find_if(values_.begin(), values_.end(),
                                    [&](const auto& v) { return sameName(v.first, name); });
    return found == values_.end() ? none : found->second;
}

bool Arguments::has(std::string_view name) const {
    return std::any_of(values_.begin(), values_.end(),
                       [&](const auto& v) { return sameName(v.first, name); });
}

void Arguments::set(std::string name, Value value) {
    const auto found = std::find_if(values_.begin(), values_.end(),
                                    [&](const auto& v) { return sameName(v.first, name); });
    if (found != values_.end()) {
        found->second = std::move(value);
    } else {
        values_.emplace_back(std::move(name), std::move(value));
    }
}

ProviderRegistration::ProviderRegistration(ProviderFactory factory) {
    factories().push_back(std::move(factory));
}

std::vector<std::unique_ptr<Provider>> makeProviders(Services& services) {
    std::vector<std::unique_ptr<Provider>> providers;
    for (const ProviderFactory& factory : factories()) {
        providers.push_back(factory(services));
    }
    return providers;
}

} // namespace velclp_sim
