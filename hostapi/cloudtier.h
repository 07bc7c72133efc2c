#pragma once
#include <QString>

class LtdInfo;

// The three cloud tiers a server entry can address, told from its token.
enum class CloudTier { Person, Korvane, Enterprise };

// Personal cloud when the token equals KvTokenUser, Korvane cloud when it
// equals KvToken (exact, case-sensitive, in that order), else enterprise.
// A missing entry counts as an enterprise server with no id.
CloudTier tierOf(const LtdInfo *server);

// The method name of `tier`; services without a Korvane variant pass the
// enterprise name as `kvMethod`.
QString methodFor(CloudTier tier, const QString &personMethod, const QString &kvMethod,
                  const QString &enterpriseMethod);

// "qiyeID": -1 personal, 0 Korvane, the entry's enterprise id otherwise.
int qiyeIdFor(const LtdInfo *server);

// "usetype": 1 personal, 2 enterprise, 3 Korvane.
int usetypeFor(CloudTier tier);
