// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

/// Projects, models and stored files: what a session is started with.
namespace varnel::wire {

struct ProjectRecord {
  std::string path;  ///< absolute, on the host
  std::string name;
  bool highRisk = false;  ///< starting here needs an explicit acknowledgement

  [[nodiscard]] const std::string& identity() const { return path; }
};
bool operator==(const ProjectRecord&, const ProjectRecord&);

struct ProjectsEnvelope {
  std::vector<ProjectRecord> projects;
};
bool operator==(const ProjectsEnvelope&, const ProjectsEnvelope&);

struct ServiceTierOption {
  std::string id;
  std::string name;
  std::string description;

  [[nodiscard]] const std::string& identity() const { return id; }
};
bool operator==(const ServiceTierOption&, const ServiceTierOption&);

/// A model of the catalogue; made from the loose answer of the models operation, not decoded from it.
struct ModelOption {
  std::string id;
  std::string displayName;
  std::vector<std::string> efforts;
  std::optional<std::string> defaultEffort;
  bool isDefault = false;
  std::vector<ServiceTierOption> serviceTiers;

  [[nodiscard]] const std::string& identity() const { return id; }
};
bool operator==(const ModelOption&, const ModelOption&);

/// A file that the bridge keeps for a session; sent back inside messages and goals.
struct UploadedAttachment {
  std::string id;
  std::string kind;
  std::string name;
  std::string mimeType;
  std::int64_t size = 0;  ///< bytes

  [[nodiscard]] const std::string& identity() const { return id; }
};
bool operator==(const UploadedAttachment&, const UploadedAttachment&);

}  // namespace varnel::wire
