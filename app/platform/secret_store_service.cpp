// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/secret_store_service.h"

// Qt's keyword of that name would break a header of GIO's.
#undef signals
#include <libsecret/secret.h>

#include <memory>
#include <utility>

namespace varnel::platform {
namespace {

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Unref>;

struct FreeItems {
  void operator()(GList* items) const { g_list_free_full(items, g_object_unref); }
};
using Items = std::unique_ptr<GList, FreeItems>;

struct FreeAttributes {
  void operator()(GHashTable* attributes) const { g_hash_table_unref(attributes); }
};
using Attributes = std::unique_ptr<GHashTable, FreeAttributes>;

struct FreeValue {
  void operator()(SecretValue* value) const { secret_value_unref(value); }
};
using Value = std::unique_ptr<SecretValue, FreeValue>;

struct FreeError {
  void operator()(GError* error) const { g_error_free(error); }
};

/// Takes what a failed call wrote.
class Failure {
 public:
  GError** out() { return &m_error; }
  /// `absent`: the failure means that there is no service to ask.
  std::unexpected<SecretError> take(bool absent) {
    const std::unique_ptr<GError, FreeError> error(std::exchange(m_error, nullptr));
    return std::unexpected(SecretError{.status = error ? error->code : 0, .storeIsAbsent = absent});
  }
  std::unexpected<SecretError> take() { return take(saysNoService()); }
  [[nodiscard]] bool isSet() const { return m_error != nullptr; }
  [[nodiscard]] bool isCancellation() const { return is(G_IO_ERROR, G_IO_ERROR_CANCELLED); }

 private:
  [[nodiscard]] bool is(GQuark domain, int code) const { return g_error_matches(m_error, domain, code) != FALSE; }
  [[nodiscard]] bool saysNoService() const {
    return is(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) || is(G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) ||
           is(G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_EXEC_FAILED) || is(G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_CHILD_EXITED);
  }

  GError* m_error = nullptr;
};

/// A GCancellable that follows a stop token.
class Cancellation {
 public:
  explicit Cancellation(const std::stop_token& token)
      : m_cancellable(g_cancellable_new()), m_onStop(token, Cancel{m_cancellable.get()}) {}
  [[nodiscard]] GCancellable* get() const { return m_cancellable.get(); }

 private:
  struct Cancel {
    GCancellable* cancellable;
    void operator()() const { g_cancellable_cancel(cancellable); }
  };
  Owned<GCancellable> m_cancellable;
  std::stop_callback<Cancel> m_onStop;
};

// The service's answer to many calls is "first ask the person"; libsecret then asks through these three. Ours say at
// once what a person who dismisses the question would: it stays locked.
constexpr const char* kNoPrompt = "locked, and nobody is asked";

GVariant* refusePrompt(SecretService*, SecretPrompt*, GCancellable*, const GVariantType*, GError** error) {
  g_set_error_literal(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED, kNoPrompt);
  return nullptr;
}

// NOLINTNEXTLINE(readability-function-size): libsecret sets the signature.
void refusePromptLater(SecretService* service, SecretPrompt*, const GVariantType*, GCancellable*,
                       GAsyncReadyCallback callback, gpointer data) {
  g_task_report_new_error(service, callback, data, nullptr, SECRET_ERROR, SECRET_ERROR_IS_LOCKED, "%s", kNoPrompt);
}

GVariant* finishRefusedPrompt(SecretService* /*service*/, GAsyncResult* result, GError** error) {
  return static_cast<GVariant*>(g_task_propagate_pointer(reinterpret_cast<GTask*>(result), error));
}

void initializeQuietClass(gpointer klass, gpointer /*data*/) {
  auto* service = static_cast<SecretServiceClass*>(klass);
  service->prompt_sync = refusePrompt;
  service->prompt_async = refusePromptLater;
  service->prompt_finish = finishRefusedPrompt;
}

GType quietServiceType() {
  static const GType kType =
      g_type_register_static_simple(SECRET_TYPE_SERVICE, "VarnelQuietSecretService", sizeof(SecretServiceClass),
                                    initializeQuietClass, sizeof(SecretService), nullptr, GTypeFlags{});
  return kType;
}

/// A connection and a session with the service, for the length of one call.
struct Connection {
  Owned<GDBusConnection> bus;
  Owned<SecretService> service;
};

SecretResult<Connection> connect(const Cancellation& cancellation) {
  Connection connection;
  Failure failure;
  connection.bus.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellation.get(), failure.out()));
  if (!connection.bus) return failure.take(!failure.isCancellation());
  // The default is to end the process when the bus goes away.
  g_dbus_connection_set_exit_on_close(connection.bus.get(), FALSE);

  connection.service.reset(secret_service_open_sync(quietServiceType(), nullptr, SECRET_SERVICE_OPEN_SESSION,
                                                    cancellation.get(), failure.out()));
  if (!connection.service) return failure.take();
  return connection;
}

Attributes attributesOf(const SecretServiceStore::Item& item) {
  Attributes attributes(g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free));
  g_hash_table_insert(attributes.get(), g_strdup("service"), g_strdup(item.service.c_str()));
  g_hash_table_insert(attributes.get(), g_strdup("account"), g_strdup(item.account.c_str()));
  return attributes;
}

/// Every item with these attributes, unlocked and with its secret where that needs no question.
SecretResult<Items> search(const Connection& connection, GHashTable* attributes, const Cancellation& cancellation) {
  constexpr auto kFlags =
      static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_UNLOCK | SECRET_SEARCH_LOAD_SECRETS);
  Failure failure;
  Items items(secret_service_search_sync(connection.service.get(), nullptr, attributes, kFlags, cancellation.get(),
                                         failure.out()));
  if (failure.isSet()) return failure.take();
  return items;
}

bool isLocked(SecretItem* item) {
  return secret_item_get_locked(item) != FALSE;
}

SecretError lockedError() {
  return {.status = SECRET_ERROR_IS_LOCKED};
}

/// Several items are possible when the default collection was changed between two saves: the last written counts.
SecretItem* newestReadable(GList* items) {
  SecretItem* newest = nullptr;
  for (const GList* entry = items; entry != nullptr; entry = entry->next) {
    auto* item = static_cast<SecretItem*>(entry->data);
    if (isLocked(item)) continue;
    if (newest == nullptr || secret_item_get_modified(item) > secret_item_get_modified(newest)) newest = item;
  }
  return newest;
}

}  // namespace

SecretServiceStore::SecretServiceStore(Item item) : m_item(std::move(item)) {}

SecretResult<void> SecretServiceStore::save(std::string secret, std::stop_token token) {
  const Cancellation cancellation(token);
  const auto connection = connect(cancellation);
  if (!connection) return std::unexpected(connection.error());

  const Attributes attributes = attributesOf(m_item);
  const Value value(secret_value_new(secret.data(), static_cast<gssize>(secret.size()), "text/plain"));
  Failure failure;
  if (secret_service_store_sync(connection->service.get(), nullptr, attributes.get(), SECRET_COLLECTION_DEFAULT,
                                m_item.label.c_str(), value.get(), cancellation.get(), failure.out()) == FALSE) {
    return failure.take();
  }
  return {};
}

SecretResult<std::optional<std::string>> SecretServiceStore::load(std::stop_token token) {
  const Cancellation cancellation(token);
  const auto connection = connect(cancellation);
  if (!connection) return std::unexpected(connection.error());

  const Attributes attributes = attributesOf(m_item);
  const auto items = search(*connection, attributes.get(), cancellation);
  if (!items) return std::unexpected(items.error());
  if (!*items) return std::nullopt;
  SecretItem* item = newestReadable(items->get());
  if (item == nullptr) return std::unexpected(lockedError());
  const Value value(secret_item_get_secret(item));
  if (!value) return std::unexpected(SecretError{.status = 0});
  gsize length = 0;
  const gchar* data = secret_value_get(value.get(), &length);
  return std::string(data, length);
}

SecretResult<void> SecretServiceStore::remove(std::stop_token token) {
  const Cancellation cancellation(token);
  const auto connection = connect(cancellation);
  if (!connection) return std::unexpected(connection.error());

  const Attributes attributes = attributesOf(m_item);
  const auto items = search(*connection, attributes.get(), cancellation);
  if (!items) return std::unexpected(items.error());
  SecretResult<void> result;
  for (const GList* entry = items->get(); entry != nullptr; entry = entry->next) {
    auto* item = static_cast<SecretItem*>(entry->data);
    Failure failure;
    if (isLocked(item)) {
      result = std::unexpected(lockedError());
    } else if (secret_item_delete_sync(item, cancellation.get(), failure.out()) == FALSE) {
      result = failure.take();
    }
  }
  return result;
}

}  // namespace varnel::platform
