#pragma once

// The message codec, `MimeCodec`: everything that others may ask of a message's bytes.

#include "mail/codec/charset.h"
#include "mail/codec/content_index.h"
#include "mail/codec/header_decoding.h"
#include "mail/codec/header_editing.h"
#include "mail/codec/header_encoding.h"
#include "mail/codec/header_fields.h"
#include "mail/codec/header_parameters.h"
#include "mail/codec/identifiers.h"
#include "mail/codec/list_splitting.h"
#include "mail/codec/text_encoding.h"
#include "mail/codec/transfer_encoding.h"
#include "mail/codec/uuencoding.h"
