// One HTTP conversation with a server, kept open from call to call. A connection that the server
// dropped meanwhile is made anew; a call that got no byte of a reply over a kept one is sent once
// more. Used by one thread at a time.
#ifndef CIMCLIENT_CONNECTION_H
#define CIMCLIENT_CONNECTION_H

#include "endpoint.h"
#include "request.h"

#include <curl/curl.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace cimclient {

class Connection {
public:
    explicit Connection(const Endpoint& endpoint);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // A Failure when nothing answers at the address. It leaves no connection behind.
    static void probe(const Endpoint& endpoint);

    // Sends the request (DSP0200, clause 6) and gives the body of the reply, which is the
    // caller's until the next call. A Failure for whatever keeps a body from arriving.
    std::string& call(const Request& request);

    // Whether the last call's connection is still there.
    bool isOpen() const;

    // Gives up memory that a large reply took.
    void trim();

private:
    struct CleanUp {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };
    using Handle = std::unique_ptr<CURL, CleanUp>;
    using HeaderList = std::unique_ptr<curl_slist, CleanUp>;

    static Handle makeHandle(const Endpoint& endpoint);
    static HeaderList headers(const Request& request);
    static std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* self);
    template<typename Work>
    std::size_t take(std::size_t bytes, Work work);
    static std::size_t onBody(char* data, std::size_t size, std::size_t count, void* self);

    void applyLimits();
    void header(std::string_view line);
    void checkReply() const;

    Handle m_handle;
    std::string m_body;
    std::size_t m_maxBody = 0;
    bool m_tooLarge = false;
    bool m_outOfMemory = false;
    // CIMStatusCode and CIMStatusCodeDescription, in front of the body or behind it.
    int m_statusCode = 0;
    std::string m_statusDescription;
};

} // namespace cimclient

#endif
