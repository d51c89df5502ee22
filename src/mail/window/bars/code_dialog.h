#pragma once

#include <optional>
#include <vector>

#include "mail/codec/mime/code_offers.h"

class QWidget;

namespace vorn {

/// Lets the user choose the code to read a message in, seeing what each gives. `wrongLabels` are
/// what the message says of itself and does not hold (see `WrongLabels`). Nothing when he declines.
std::optional<CodeOffer> ChooseCode(QWidget* parent, const std::vector<CodeOffer>& offers,
                                    const QStringList& wrongLabels);

}  // namespace vorn
