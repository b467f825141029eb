// The part of a manifest that describes a table: dimensions, values, formats, footnotes.
#pragma once

#include <vector>

#include "host/build/manifest_reader.h"
#include "host/build/table_description.h"

namespace vornwout {

/// The members of a table's object; reading them fills `table`, which must outlive them.
std::vector<ManifestReader::Member> tableMembers(ManifestReader& reader, TableDescription& table);

/// What only shows when all members were read; the reader stands at the table's object.
void finishTable(const ManifestReader& reader, TableDescription& table);

}  // namespace vornwout
