#include "simulator/cimservice.h"

#include "simulator/logintoken.h"

#include "database/cdbc.h"

#include <algorithm>
#include <chrono>

namespace velclp_sim {

namespace {

/// What the log says of the object: its path, or the class that is enumerated.
std::string objectText(const Request& request) {
    if (!request.intrinsic) {
        return request.object.toText();
    }
    for (const RawParameter& parameter : request.parameters) {
        const bool filter =
            sameName(parameter.name, "AssocClass") || (sameName(parameter.name, "ResultClass"));
        if (const ObjectPath* path = filter ? nullptr : parameter.value.toPath()) {
            return path->toText();
        }
        if (parameter.instance) {
            return parameter.instance->className;
        }
    }
    return {};
}

std::string envelope(const Request& request, const std::string& content) {
    const char* response = request.intrinsic ? "IMETHODRESPONSE" : "METHODRESPONSE";
    std::string out;
    out.reserve(content.size() + 512);
    out +=
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n";
    CimXmlWriter writer(out);
    writer.open("MESSAGE");
    writer.attribute("ID", request.messageId);
    writer.attribute("PROTOCOLVERSION", "1.0");
    writer.openEnd();
    out += "<SIMPLERSP>\n";
    writer.open(response);
    writer.attribute("NAME", request.name);
    writer.openEnd();
    out += content;
    writer.close(response);
    out += "</SIMPLERSP>\n</MESSAGE>\n</CIM>\n";
    return out;
}

std::string errorElement(int code, const std::string& description) {
    std::string out;
    CimXmlWriter writer(out);
    writer.open("ERROR");
    writer.attribute("CODE", std::to_string(code));
    writer.attribute("DESCRIPTION", description);
    out += "/>\n";
    return out;
}

std::string failure(const char* reason, int* outcome) {
    const CimError failed(CimStatus::failed, reason);
    *outcome = failed.code();
    return errorElement(failed.code(), failed.what());
}

CimReply httpError(const RequestError& error) {
    CimReply reply;
    reply.status = error.status();
    reply.cimError = error.cimError();
    return reply;
}

/// Keeps the length and breaks the structure in the middle.
void spoil(std::string& body) {
    const auto tag = body.find("</", body.size() / 2);
    if (tag != std::string::npos) {
        body[tag + 1] = '&';
    }
}

void checkHeaders(const CimCall& call, const Request& request) {
    if (!call.cimOperation.empty() && !sameName(call.cimOperation, "MethodCall")) {
        throw RequestError(501, "unsupported-operation", call.cimOperation);
    }
    if (!call.cimMethod.empty() && call.cimMethod != request.name) {
        throw RequestError(400, "header-mismatch", call.cimMethod);
    }
}

} // namespace

CimService::CimService(Repository& repository, ProviderSet& providers, Scheduler& scheduler,
                       std::string hostName)
    : repository_(repository),
      scheduler_(scheduler),
      operations_(repository, providers, std::move(hostName)) {}

CimReply CimService::answer(const CimCall& call) {
    Request request;
    try {
        request = readRequest(call.body);
        checkHeaders(call, request);
    } catch (const RequestError& error) {
        statistics_.log("(bad request)", error.what(), error.status());
        return httpError(error);
    }
    const std::string subject = operations_.subject(request);
    const Class* cls = repository_.findClass(request.nameSpace, subject);
    const Method* method = cls && !request.intrinsic ? cls->method(request.name) : nullptr;
    statistics_.count(request.intrinsic ? Operations::knownOperation(request.name) : "InvokeMethod",
                      method ? method->name : std::string(), subject);
    return serve(request, callerOf(call.authorization),
                 faults_.hit(request.name, request.intrinsic, cls));
}

CimReply CimService::serve(const Request& request, const Caller& caller,
                           const std::vector<Fault>& faults) {
    const Fault* planted = nullptr;
    for (const Fault& fault : faults) {
        if (fault.kind == Fault::Kind::delay) {
            constexpr std::uint64_t longest = 3600000;
            scheduler_.pauseExactly(std::chrono::milliseconds(std::min(fault.amount, longest)));
        } else if (!planted) {
            planted = &fault;
        }
    }
    int outcome = 0;
    CimReply reply = runAndWrap(request, caller, planted, &outcome);
    statistics_.log(request.name, objectText(request), outcome);
    return reply;
}

CimReply CimService::runAndWrap(const Request& request, const Caller& caller, const Fault* planted,
                                int* outcome) {
    using Kind = Fault::Kind;
    CimReply reply;
    if (planted && (planted->kind == Kind::drop || planted->kind == Kind::http ||
                    planted->kind == Kind::reply)) {
        reply.drop = planted->kind == Kind::drop;
        reply.status = planted->kind == Kind::http ? planted->code : reply.status;
        reply.body = planted->kind == Kind::reply ? planted->text : std::string();
        *outcome = planted->kind == Kind::http ? planted->code : 0;
        return reply;
    }
    std::string content;
    try {
        if (planted && planted->kind == Kind::error) {
            throw CimError(planted->code, planted->text);
        }
        if (planted && planted->kind == Kind::methodReturn && !request.intrinsic) {
            content = operations_.plantedResult(request, planted->text);
        } else {
            content = operations_.run(request, caller);
        }
        if (request.intrinsic) {
            content = "<IRETURNVALUE>\n" + content + "</IRETURNVALUE>\n";
        }
    } catch (const CimError& error) {
        content = errorElement(error.code(), error.what());
        *outcome = error.code();
    } catch (const std::exception& error) {
        content = failure(error.what(), outcome);
    } catch (const CDBC_Exception& error) {
        content = failure(error.text(), outcome);
    }
    reply.body = envelope(request, content);
    if (planted && planted->kind == Kind::malformed) {
        spoil(reply.body);
    } else if (planted && planted->kind == Kind::cut) {
        reply.cutAfter = std::min<std::uint64_t>(planted->amount, reply.body.size());
    }
    return reply;
}

} // namespace velclp_sim
