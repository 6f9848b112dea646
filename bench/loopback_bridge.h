// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QThread>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <atomic>
#include <ctime>
#include <string>
#include <vector>

#include <pthread.h>

namespace varnel::bench {

/// Answers every request, on a thread of its own, with one of its bodies in turn.
class LoopbackBridge : public QThread {
 public:
  explicit LoopbackBridge(std::vector<QByteArray> bodies) : m_bodies(std::move(bodies)) {
    start();
    while (m_port == 0) QThread::msleep(1);
  }
  ~LoopbackBridge() override {
    quit();
    wait();
  }
  /// What this thread took of the processor, in seconds.
  [[nodiscard]] double cpuSeconds() const {
    clockid_t clock{};
    timespec spent{};
    pthread_getcpuclockid(m_thread, &clock);
    clock_gettime(clock, &spent);
    return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) * 1e-9;
  }
  [[nodiscard]] std::string baseURL() const { return "http://127.0.0.1:" + std::to_string(m_port); }

 protected:
  void run() override {
    QTcpServer server;
    connect(&server, &QTcpServer::newConnection, &server, [&] {
      QTcpSocket* socket = server.nextPendingConnection();
      connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
        if (!socket->readAll().endsWith("\r\n\r\n")) return;
        const QByteArray& body = m_bodies[m_next++ % m_bodies.size()];
        socket->write("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n");
        socket->write(body);
        socket->disconnectFromHost();
      });
      connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    });
    m_thread = pthread_self();
    server.listen(QHostAddress::LocalHost);
    m_port = server.serverPort();
    exec();
  }

 private:
  std::vector<QByteArray> m_bodies;
  std::size_t m_next = 0;
  pthread_t m_thread{};
  std::atomic<quint16> m_port = 0;
};

}  // namespace varnel::bench
