// The CIM side of the server, without HTTP: takes a request's body and headers, checks them, lets
// planted faults have their way, runs the operation, and gives back what is to be sent.
#pragma once

#include "simulator/faults.h"
#include "simulator/operations.h"
#include "simulator/statistics.h"

#include <optional>
#include <string>
#include <string_view>

namespace velclp_sim {

/// A request as HTTP brings it; headers that were not sent are empty.
struct CimCall {
    std::string_view body;
    std::string cimOperation;
    std::string cimMethod;
    std::string authorization;
};

struct CimReply {
    int status = 200;
    /// The CIMError header of a reply without a body; empty otherwise.
    std::string cimError;
    std::string body;
    /// Bytes of the body after which the connection is closed; nothing for a whole reply.
    std::optional<std::size_t> cutAfter;
    /// True when the connection is closed without a reply.
    bool drop = false;
};

class CimService {
public:
    CimService(Repository& repository, ProviderSet& providers, Scheduler& scheduler,
               std::string hostName);

    /// Any thread may call it.
    CimReply answer(const CimCall& call);

    FaultTable& faults() { return faults_; }
    Statistics& statistics() { return statistics_; }

private:
    CimReply serve(const Request& request, const Caller& caller, const std::vector<Fault>& faults);
    CimReply runAndWrap(const Request& request, const Caller& caller, const Fault* planted,
                        int* outcome);

    Repository& repository_;
    Scheduler& scheduler_;
    Operations operations_;
    FaultTable faults_;
    Statistics statistics_;
};

} // namespace velclp_sim
