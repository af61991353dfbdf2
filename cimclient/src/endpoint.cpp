#include "endpoint.h"

#include "status.h"
#include "text.h"

#include <curl/curl.h>

#include <initializer_list>
#include <memory>

namespace cimclient {

namespace {

std::string orDefault(const char* text, const char* standard) {
    return text && *text ? text : standard;
}

void check(CURLUcode code) {
    if (code == CURLUE_OK)
        return;
    if (code == CURLUE_OUT_OF_MEMORY)
        throw std::bad_alloc();
    throw Failure{CMPI_RC_ERR_FAILED, curl_easy_strerror(CURLE_URL_MALFORMAT)};
}

// A host is a name or an address, nothing that would make another URL of it; IPv6 addresses may
// come without their brackets.
std::string urlHost(const std::string& host) {
    return host.find(':') != std::string::npos && host.front() != '[' ? "[" + host + "]" : host;
}

std::string makeUrl(const Endpoint& endpoint) {
    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url(curl_url(), &curl_url_cleanup);
    if (!url)
        throw std::bad_alloc();
    check(curl_url_set(url.get(), CURLUPART_SCHEME, endpoint.scheme.c_str(), 0));
    check(curl_url_set(url.get(), CURLUPART_HOST, urlHost(endpoint.host).c_str(), 0));
    check(curl_url_set(url.get(), CURLUPART_PATH, "/cimom", 0));
    if (endpoint.unixSocket.empty())
        check(curl_url_set(url.get(), CURLUPART_PORT, endpoint.port.c_str(), 0));
    char* text = nullptr;
    check(curl_url_get(url.get(), CURLUPART_URL, &text, 0));
    const std::unique_ptr<char, decltype(&curl_free)> owner(text, &curl_free);
    return text;
}

// No part holds a NUL, so two different lists never make the same key.
std::string keyPart(const std::optional<std::string>& part) {
    return (part ? "+" : "-") + part.value_or("") + '\0';
}

} // namespace

Endpoint::Endpoint(const char* hostName, const char* schemeName, const char* portOrPath,
                   const char* userName, const char* userPassword)
    : scheme(orDefault(schemeName, "http")),
      host(orDefault(hostName, "localhost")),
      port(orDefault(portOrPath, scheme == "https" ? "5989" : "5988")),
      user(optionalText(userName)) {
    if (!equalNoCase(scheme, "http") && !equalNoCase(scheme, "https"))
        throw Failure{CMPI_RC_ERR_FAILED, curl_easy_strerror(CURLE_UNSUPPORTED_PROTOCOL)};
    if (port.front() == '/')
        unixSocket = port;
    if (userName && userPassword)
        password = userPassword;
    url = makeUrl(*this);
}

std::string Endpoint::serverKey() const {
    return keyPart(url) + keyPart(unixSocket);
}

std::string Endpoint::key() const {
    std::string key = serverKey() + keyPart(password);
    for (const auto* part : {&user, &trustStore, &certFile, &keyFile})
        key += keyPart(*part);
    return key.append(verifyPeer ? "v" : "");
}

} // namespace cimclient
