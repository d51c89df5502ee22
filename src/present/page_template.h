#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

/// The page template that folders without a layout of their own use: 46 lines joined with CR LF.
QString DefaultPageTemplate();

/// A page for the screen: where it has the colours that this template documents, others follow them
/// for a dark scheme.
QByteArray WithDarkColors(QByteArray page);

}  // namespace vorn
