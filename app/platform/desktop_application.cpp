// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/desktop_application.h"

#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <utility>

namespace varnel::platform {
namespace {

constexpr int kAnswerMilliseconds = 3000;

}  // namespace

DesktopApplication::DesktopApplication(QDBusConnection bus, QString id, QObject* parent)
    : QObject(parent),
      m_bus(std::move(bus)),
      m_id(std::move(id)),
      m_path(QLatin1Char('/') + QString(m_id).replace(QLatin1Char('.'), QLatin1Char('/'))) {}

DesktopApplication::Instance DesktopApplication::join(const QStringList& links) {
  if (!m_bus.isConnected()) return Instance::Unreachable;
  // The object stands before the name, so that whoever sees the name finds it.
  m_bus.registerObject(m_path, this, QDBusConnection::ExportScriptableSlots);
  if (m_bus.registerService(m_id)) return Instance::First;
  m_bus.unregisterObject(m_path);
  return tellFirst(links) ? Instance::Second : Instance::Unreachable;
}

bool DesktopApplication::tellFirst(const QStringList& links) {
  auto call = QDBusMessage::createMethodCall(m_id, m_path, QStringLiteral("org.freedesktop.Application"),
                                             links.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
  if (!links.isEmpty()) call << links;
  call << QVariantMap();
  return m_bus.call(call, QDBus::Block, kAnswerMilliseconds).type() == QDBusMessage::ReplyMessage;
}

void DesktopApplication::Activate(const QVariantMap& /*platformData*/) {
  emit activated();
}

void DesktopApplication::Open(const QStringList& uris, const QVariantMap& /*platformData*/) {
  for (const QString& uri : uris) emit linkOpened(uri);
}

// The desktop file names no actions; an unknown one shows the window, which is what whoever asked expects.
void DesktopApplication::ActivateAction(const QString& /*actionName*/, const QVariantList& /*parameter*/,
                                        const QVariantMap& /*platformData*/) {
  emit activated();
}

}  // namespace varnel::platform
