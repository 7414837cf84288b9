#pragma once

#include <QString>

/// Names of the one-character codes of the order data. Codes compare exactly as passed.

/// Contract kind (selector 1), parts management kind (selector 6) or either (selector 0); a code
/// without a name comes back itself.
QString ContractKindName(const QString &code, int selector);

/// State of an order's figures; selector 11 names state "3" differently. Empty for other codes.
QString InfoStateName(const QString &code, int selector);

/// Payment terms. Empty for other codes.
QString PaymentTermsName(const QString &code);
