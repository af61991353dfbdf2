// The client over TLS: whose certificates it takes, and its own.
#include "clientfixture.h"

#include <httplib.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <thread>

using namespace velmora_clp;

namespace {

struct Free {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// A key with a certificate that it signed itself, for a host that is nowhere.
struct Identity {
    Identity() : key(EVP_EC_gen("P-256")), certificate(X509_new()) {
        ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
        X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
        X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
        X509_NAME* name = X509_get_subject_name(certificate.get());
        X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                                   reinterpret_cast<const unsigned char*>("elsewhere.invalid"), -1,
                                   -1, 0);
        X509_set_issuer_name(certificate.get(), name);
        X509_set_pubkey(certificate.get(), key.get());
        if (X509_sign(certificate.get(), key.get(), EVP_sha256()) == 0)
            throw std::runtime_error("no certificate");
    }
    std::unique_ptr<EVP_PKEY, Free> key;
    std::unique_ptr<X509, Free> certificate;
};

class Tls : public testing::Test {
protected:
    Tls() {
        std::string folder = (std::filesystem::temp_directory_path() / "tlsXXXXXX").string();
        m_folder = mkdtemp(folder.data());
    }
    ~Tls() override {
        if (m_server) {
            m_server->stop();
            m_thread.join();
        }
        std::filesystem::remove_all(m_folder);
    }

    // Answers every request with the names of nothing, and ends the connection unless it is to be
    // kept; asks for the client's certificate when one is given that it must have.
    void serve(const Identity* required = nullptr, bool keep = false) {
        X509_STORE* known = required ? X509_STORE_new() : nullptr;
        if (required)
            X509_STORE_add_cert(known, required->certificate.get());
        m_server =
            std::make_unique<httplib::SSLServer>(m_own.certificate.get(), m_own.key.get(), known);
        m_server->Post("/cimom", [keep](const httplib::Request&, httplib::Response& response) {
            if (!keep)
                response.set_header("Connection", "close");
            response.set_content(replyMessage("<IMETHODRESPONSE NAME=\"Any\"><IRETURNVALUE/>"
                                              "</IMETHODRESPONSE>"),
                                 "application/xml");
        });
        m_server->set_keep_alive_timeout(2);
        m_port = std::to_string(m_server->bind_to_any_port("127.0.0.1"));
        m_thread = std::thread([this] { m_server->listen_after_bind(); });
        while (!m_server->is_running())
            std::this_thread::yield();
    }

    std::string certificateFile(const Identity& identity, const char* fileName) {
        const std::string path = m_folder / fileName;
        const std::unique_ptr<std::FILE, Free> file(std::fopen(path.c_str(), "w"));
        PEM_write_X509(file.get(), identity.certificate.get());
        return path;
    }
    std::string keyFile(const Identity& identity, const char* fileName) {
        const std::string path = m_folder / fileName;
        const std::unique_ptr<std::FILE, Free> file(std::fopen(path.c_str(), "w"));
        PEM_write_PrivateKey(file.get(), identity.key.get(), nullptr, nullptr, 0, nullptr, nullptr);
        return path;
    }

    // What becomes of connecting and one operation.
    Outcome use(CMCIClient* connected) {
        const CimClient client(connected);
        if (client)
            CimEnumeration(client->ft->enumInstanceNames(client.get(), name.get(), status.out()));
        return outcome(status);
    }
    Outcome useAnyServer() {
        return use(
            cmciConnect("127.0.0.1", "https", m_port.c_str(), nullptr, nullptr, status.out()));
    }
    Outcome useTrusted(const std::string& trustStore, int verifyMode = CMCI_VERIFY_PEER) {
        return use(cmciConnect2("127.0.0.1", "https", m_port.c_str(), nullptr, nullptr, verifyMode,
                                trustStore.c_str(), nullptr, nullptr, status.out()));
    }

    const Outcome fine{0, ""};
    const Outcome notTrusted{1, "SSL peer certificate or SSH remote key was not OK"};
    Identity m_own;
    std::string m_port;
    CimPath name = thing();
    CimStatus status;

private:
    std::filesystem::path m_folder;
    std::unique_ptr<httplib::SSLServer> m_server;
    std::thread m_thread;
};

TEST_F(Tls, TakesAnyCertificateUnlessToldToVerifyIt) {
    serve();
    EXPECT_EQ(useAnyServer(), fine);
    EXPECT_EQ(useTrusted(certificateFile(Identity(), "other.pem"), CMCI_VERIFY_NONE), fine);
}

TEST_F(Tls, VerifiesTheServerByTheTrustStoreButNotItsName) {
    serve();
    EXPECT_EQ(useTrusted(certificateFile(Identity(), "other.pem")), notTrusted);
    EXPECT_EQ(useTrusted(certificateFile(m_own, "own.pem")), fine);
}

TEST_F(Tls, DoesNotVerifyByAConnectionThatWasNotVerified) {
    serve(nullptr, true);
    const std::string other = certificateFile(Identity(), "other.pem");
    EXPECT_EQ(useTrusted(other, CMCI_VERIFY_NONE), fine);
    EXPECT_EQ(useTrusted(other), notTrusted);
}

TEST_F(Tls, ShowsTheClientsOwnCertificateToAServerThatAsksForIt) {
    const Identity client;
    serve(&client);
    EXPECT_FALSE(useAnyServer() == fine);
    EXPECT_EQ(use(cmciConnect2("127.0.0.1", "https", m_port.c_str(), nullptr, nullptr,
                               CMCI_VERIFY_PEER, certificateFile(m_own, "server.pem").c_str(),
                               certificateFile(client, "client.pem").c_str(),
                               keyFile(client, "client.key").c_str(), status.out())),
              fine);
}

} // namespace
