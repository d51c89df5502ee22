#pragma once

// The message codec, `MimeCodec`: everything that others may ask of a message's bytes.

#include "mail/codec/charset/charset.h"
#include "mail/codec/charset/text_encoding.h"
#include "mail/codec/header/header_decoding.h"
#include "mail/codec/header/header_editing.h"
#include "mail/codec/header/header_encoding.h"
#include "mail/codec/header/header_fields.h"
#include "mail/codec/header/header_parameters.h"
#include "mail/codec/header/identifiers.h"
#include "mail/codec/header/list_splitting.h"
#include "mail/codec/header/transfer_encoding.h"
#include "mail/codec/header/uuencoding.h"
#include "mail/codec/mime/content_index.h"
