// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>

#include "tests/app/client/client_fixture.h"

/// A bridge behind TLS whose certificate nobody vouches for: nothing of a request may reach it.
namespace varnel::client {
namespace {

template <class Write>
QByteArray toPem(Write write) {
  const std::unique_ptr<BIO, decltype(&BIO_free)> bio(BIO_new(BIO_s_mem()), BIO_free);
  write(bio.get());
  char* data = nullptr;
  const auto size = BIO_get_mem_data(bio.get(), &data);
  return QByteArray(data, static_cast<qsizetype>(size));
}

/// A key and a certificate for 127.0.0.1, made afresh and signed by itself.
QSslConfiguration selfSigned() {
  const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_EC_gen("P-256"), EVP_PKEY_free);
  const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), X509_free);
  X509_set_version(certificate.get(), 2);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -60);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
  X509_set_pubkey(certificate.get(), key.get());
  X509_NAME* name = X509_get_subject_name(certificate.get());
  const unsigned char commonName[] = "127.0.0.1";
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, commonName, -1, -1, 0);
  X509_set_issuer_name(certificate.get(), name);
  X509_sign(certificate.get(), key.get(), EVP_sha256());

  QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
  configuration.setLocalCertificate(
      QSslCertificate(toPem([&](BIO* bio) { PEM_write_bio_X509(bio, certificate.get()); })));
  configuration.setPrivateKey(
      QSslKey(toPem([&](BIO* bio) { PEM_write_bio_PrivateKey(bio, key.get(), nullptr, nullptr, 0, nullptr, nullptr); }),
              QSsl::Ec));
  return configuration;
}

class TransportSecurity : public testing::Test {
 protected:
  void SetUp() override {
    server.setSslConfiguration(selfSigned());
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    QObject::connect(&server, &QSslServer::pendingConnectionAvailable, &server, [this] {
      while (QTcpSocket* socket = server.nextPendingConnection()) {
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
          received += socket->readAll();
          if (received.contains("\r\n\r\n")) socket->write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}");
        });
      }
    });
  }
  [[nodiscard]] wire::PairingCredentials credentials() const {
    return credentialsFor("https://127.0.0.1:" + std::to_string(server.serverPort()));
  }

  QSslServer server;
  QByteArray received;
};

TEST_F(TransportSecurity, ACertificateNobodyVouchesForIsAFailure) {
  APIClient client(credentials());
  const auto get = await(client.models());
  const auto post = await(client.interrupt("s"));
  const auto stream = client.eventStream(0);
  ASSERT_TRUE(stream);
  (*stream)->open();
  const auto opened = await((*stream)->opened());
  EXPECT_TRUE(failure<TransportError>(get)) << userText(errorOf(get));
  EXPECT_TRUE(failure<TransportError>(post)) << userText(errorOf(post));
  EXPECT_TRUE(failure<TransportError>(opened)) << userText(errorOf(opened));
  support::spinFor(50ms);
  EXPECT_EQ(received, QByteArray());
}

TEST_F(TransportSecurity, ATrustedOneServesBothKindsOfRequest) {
  const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
  QSslConfiguration trusting = before;
  trusting.addCaCertificate(server.sslConfiguration().localCertificate());
  QSslConfiguration::setDefaultConfiguration(trusting);
  {
    APIClient client(credentials());
    const auto get = await(client.models());
    EXPECT_TRUE(get) << (get ? "" : userText(get.error()));
    received.clear();
    const auto post = await(client.interrupt("s"));
    EXPECT_TRUE(post) << (post ? "" : userText(post.error()));
    EXPECT_TRUE(received.startsWith("POST /v1/sessions/s/interrupt HTTP/1.1\r\n"));
  }
  QSslConfiguration::setDefaultConfiguration(before);
}

}  // namespace
}  // namespace varnel::client
