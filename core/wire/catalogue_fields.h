// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/catalogue.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(ProjectRecord, (), (path, name, highRisk))
BOOST_DESCRIBE_STRUCT(ProjectsEnvelope, (), (projects))
BOOST_DESCRIBE_STRUCT(ServiceTierOption, (), (id, name, description))
BOOST_DESCRIBE_STRUCT(ModelOption, (), (id, displayName, efforts, defaultEffort, isDefault, serviceTiers))
BOOST_DESCRIBE_STRUCT(UploadedAttachment, (), (id, kind, name, mimeType, size))

}  // namespace varnel::wire
