#pragma once

// The message codec, `MimeCodec`: everything that others may ask of a message's bytes.

#include "mail/charset.h"
#include "mail/content_index.h"
#include "mail/header_decoding.h"
#include "mail/header_editing.h"
#include "mail/header_encoding.h"
#include "mail/header_fields.h"
#include "mail/header_parameters.h"
#include "mail/identifiers.h"
#include "mail/list_splitting.h"
#include "mail/text_encoding.h"
#include "mail/transfer_encoding.h"
#include "mail/uuencoding.h"
