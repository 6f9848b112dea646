// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/composer_rows.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <boost/describe/class.hpp>

#include "app/lists/record_roles.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(AttachmentRow, (), (id, symbol, name, size))
BOOST_DESCRIBE_STRUCT(QueuedRow, (), (id, text, note, failed))

AttachmentRow attachmentRow(const wire::UploadedAttachment& attachment) {
  return {.id = attachment.id,
          .symbol = attachment.kind == "video" ? QStringLiteral("film") : QStringLiteral("photo"),
          .name = QString::fromStdString(attachment.name),
          .size = QLocale().formattedDataSize(attachment.size, 1, QLocale::DataSizeTraditionalFormat)};
}

QueuedRow queuedRow(const wire::QueuedMessage& message) {
  QueuedRow row{.id = message.id, .text = QString::fromStdString(message.text).simplified(), .note = {}};
  row.failed = message.failure.has_value();
  if (row.failed) {
    row.note = QString::fromStdString(*message.failure);
  } else if (!message.attachments.empty()) {
    row.note = QCoreApplication::translate("QueuedRow", "%n attachment(s)", nullptr,
                                           static_cast<int>(message.attachments.size()));
  }
  return row;
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::AttachmentRow>>&
varnel::lists::rolesOf<varnel::screens::AttachmentRow>();
template const std::vector<varnel::lists::Role<varnel::screens::QueuedRow>>&
varnel::lists::rolesOf<varnel::screens::QueuedRow>();
