#include "connection.h"

#include "calllimits.h"
#include "freememory.h"
#include "status.h"
#include "text.h"

#include <poll.h>
#include <sys/socket.h>

#include <mutex>
#include <new>

namespace cimclient {

namespace {

constexpr std::size_t keptBuffer = 256UL * 1024;

template<typename Value>
void setOption(CURL* handle, CURLoption option, Value value) {
    // Only an exhausted memory makes an option with a valid value fail.
    if (curl_easy_setopt(handle, option, value) == CURLE_OUT_OF_MEMORY)
        throw std::bad_alloc();
}

void setText(CURL* handle, CURLoption option, const std::optional<std::string>& text) {
    if (text)
        setOption(handle, option, text->c_str());
}

// A program that the process starts does not inherit the connection.
curl_socket_t openSocket(void*, curlsocktype, curl_sockaddr* address) {
    return socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

bool isLoopback(const std::string& host) {
    return equalNoCase(host, "localhost") || host == "::1" || host == "[::1]" ||
           host.compare(0, 4, "127.") == 0;
}

void setCredentials(CURL* handle, const Endpoint& endpoint) {
    if (endpoint.user) {
        setOption(handle, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC));
        setText(handle, CURLOPT_USERNAME, endpoint.user);
        setText(handle, CURLOPT_PASSWORD, endpoint.password);
    }
    setOption(handle, CURLOPT_SSL_VERIFYPEER, endpoint.verifyPeer ? 1L : 0L);
    setOption(handle, CURLOPT_SSL_VERIFYHOST, 0L);
    setText(handle, CURLOPT_CAINFO, endpoint.trustStore);
    setText(handle, CURLOPT_SSLCERT, endpoint.certFile);
    setText(handle, CURLOPT_SSLKEY, endpoint.keyFile);
}

void setConnectLimit(CURL* handle) {
    setOption(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits().connect.count()));
}

void initialiseOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

[[noreturn]] void throwTransport(CURLcode code) {
    if (code == CURLE_OUT_OF_MEMORY)
        throw std::bad_alloc();
    throw Failure{CMPI_RC_ERR_FAILED, curl_easy_strerror(code)};
}

} // namespace

Connection::Connection(const Endpoint& endpoint) : m_handle(makeHandle(endpoint)) {
    CURL* handle = m_handle.get();
    setOption(handle, CURLOPT_POST, 1L);
    setOption(handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    setOption(handle, CURLOPT_HEADERFUNCTION, &Connection::onHeader);
    setOption(handle, CURLOPT_HEADERDATA, this);
    setOption(handle, CURLOPT_WRITEFUNCTION, &Connection::onBody);
    setOption(handle, CURLOPT_WRITEDATA, this);
    setCredentials(handle, endpoint);
}

Connection::Handle Connection::makeHandle(const Endpoint& endpoint) {
    initialiseOnce();
    Handle handle(curl_easy_init());
    if (!handle)
        throw std::bad_alloc();
    setText(handle.get(), CURLOPT_URL, endpoint.url);
    if (!endpoint.unixSocket.empty())
        setText(handle.get(), CURLOPT_UNIX_SOCKET_PATH, endpoint.unixSocket);
    // What is meant for this machine never goes through a proxy, whatever the environment says.
    if (isLoopback(endpoint.host) || !endpoint.unixSocket.empty())
        setOption(handle.get(), CURLOPT_PROXY, "");
    setOption(handle.get(), CURLOPT_NOSIGNAL, 1L);
    setOption(handle.get(), CURLOPT_TCP_NODELAY, 1L);
    setOption(handle.get(), CURLOPT_OPENSOCKETFUNCTION, &openSocket);
    return handle;
}

void Connection::probe(const Endpoint& endpoint) {
    const Handle handle = makeHandle(endpoint);
    setCredentials(handle.get(), endpoint);
    setConnectLimit(handle.get());
    setOption(handle.get(), CURLOPT_CONNECT_ONLY, 1L);
    const CURLcode code = curl_easy_perform(handle.get());
    if (code != CURLE_OK)
        throwTransport(code);
}

Connection::HeaderList Connection::headers(const Request& request) {
    HeaderList list;
    const auto add = [&list](const std::string& line) {
        curl_slist* longer = curl_slist_append(list.get(), line.c_str());
        if (!longer)
            throw std::bad_alloc();
        // What is appended goes to the end; the list stays the same.
        if (!list)
            list.reset(longer);
    };
    add("Content-type: application/xml; charset=\"utf-8\"");
    add("CIMProtocolVersion: 1.0");
    add("CIMOperation: MethodCall");
    add("CIMMethod: " + request.method);
    if (!request.object.empty())
        add("CIMObject: " + request.object);
    // libcurl's own ones that have no place here.
    add("Accept:");
    add("Expect:");
    return list;
}

void Connection::applyLimits() {
    const Limits limit = limits();
    m_maxBody = limit.reply;
    setConnectLimit(m_handle.get());
    setOption(m_handle.get(), CURLOPT_TIMEOUT_MS, static_cast<long>(limit.operation.count()));
    setOption(m_handle.get(), CURLOPT_LOW_SPEED_LIMIT, 1L);
    setOption(m_handle.get(), CURLOPT_LOW_SPEED_TIME, static_cast<long>(limit.idle.count()));
}

std::string& Connection::call(const Request& request) {
    m_body.clear();
    m_tooLarge = false;
    m_outOfMemory = false;
    m_statusCode = 0;
    applyLimits();
    const HeaderList list = headers(request);
    setOption(m_handle.get(), CURLOPT_HTTPHEADER, list.get());
    setOption(m_handle.get(), CURLOPT_POSTFIELDS, request.body.data());
    setOption(m_handle.get(), CURLOPT_POSTFIELDSIZE_LARGE,
              static_cast<curl_off_t>(request.body.size()));
    const CURLcode code = curl_easy_perform(m_handle.get());
    setOption(m_handle.get(), CURLOPT_HTTPHEADER, static_cast<curl_slist*>(nullptr));
    setOption(m_handle.get(), CURLOPT_POSTFIELDS, "");
    if (m_tooLarge)
        throw Failure{CMPI_RC_ERR_FAILED,
                      "The reply is larger than " + std::to_string(m_maxBody) + " bytes"};
    if (m_outOfMemory)
        throw std::bad_alloc();
    if (code != CURLE_OK)
        throwTransport(code);
    checkReply();
    return m_body;
}

void Connection::checkReply() const {
    long http = 0;
    curl_easy_getinfo(m_handle.get(), CURLINFO_RESPONSE_CODE, &http);
    if (http == 401)
        throw Failure{CMPI_RC_ERR_FAILED, "Invalid username/password"};
    if (http >= 400)
        throw Failure{CMPI_RC_ERR_FAILED, "HTTP response code said error"};
    if (m_statusCode != 0)
        throw Failure{m_statusCode, m_statusDescription.empty()
                                        ? "CIM status code " + std::to_string(m_statusCode)
                                        : m_statusDescription};
    if (m_body.empty())
        throw Failure{CMPI_RC_ERR_FAILED, "No data received from server"};
}

bool Connection::isOpen() const {
    curl_socket_t socket = CURL_SOCKET_BAD;
    curl_easy_getinfo(m_handle.get(), CURLINFO_ACTIVESOCKET, &socket);
    if (socket == CURL_SOCKET_BAD)
        return false;
    // Nothing is to be read between two calls, but for the end of the connection.
    pollfd state{socket, POLLIN, 0};
    return poll(&state, 1, 0) == 0;
}

void Connection::trim() {
    m_body.clear();
    if (m_body.capacity() > keptBuffer) {
        m_body.shrink_to_fit();
        returnFreeMemory();
    }
}

void Connection::header(std::string_view line) {
    // A new status line: what came with an interim reply does not count.
    if (line.substr(0, 5) == "HTTP/") {
        m_statusCode = 0;
        m_statusDescription.clear();
        return;
    }
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos)
        return;
    const std::string_view name = line.substr(0, colon);
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (equalNoCase(name, "CIMStatusCode"))
        m_statusCode = numberFrom<int>(value).value_or(0);
    else if (equalNoCase(name, "CIMStatusCodeDescription"))
        m_statusDescription = value;
}

// What libcurl calls must not throw: an exception would leave the handle in the middle of its work.
template<typename Work>
std::size_t Connection::take(std::size_t bytes, Work work) {
    try {
        return work() ? bytes : 0;
    } catch (const std::bad_alloc&) {
        m_outOfMemory = true;
        return 0;
    }
}

std::size_t Connection::onHeader(char* data, std::size_t size, std::size_t count, void* self) {
    Connection& connection = *static_cast<Connection*>(self);
    const std::string_view line(data, size * count);
    return connection.take(line.size(), [&] {
        connection.header(line);
        return true;
    });
}

std::size_t Connection::onBody(char* data, std::size_t size, std::size_t count, void* self) {
    Connection& connection = *static_cast<Connection*>(self);
    const std::size_t bytes = size * count;
    return connection.take(bytes, [&] {
        connection.m_tooLarge = bytes > connection.m_maxBody - connection.m_body.size();
        if (!connection.m_tooLarge)
            connection.m_body.append(data, bytes);
        return !connection.m_tooLarge;
    });
}

} // namespace cimclient
