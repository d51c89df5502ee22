#!/usr/bin/perl
# Prints a message as Email::MIME reads it, as JSON for readers.py. Usage: email_mime_reader.pl FILE
use strict;
use warnings;
use Digest::SHA qw(sha256_hex);
use Email::Address::XS;
use Email::MIME;
use JSON::PP;

open my $file, '<:raw', $ARGV[0] or die "$ARGV[0]: $!";
my $message = Email::MIME->new(do { local $/; <$file> });
my (@texts, @files);
$message->walk_parts(sub {
  my ($part) = @_;
  return if $part->subparts;
  my $type = $part->content_type // 'text/plain';
  my $name = $part->filename;
  if (defined $name) {
    push @files, {name => $name, sha256 => sha256_hex($part->body)};
  } elsif ($type =~ m{^text/(\w+)}i) {
    my $text = eval { $part->body_str } // $part->body;
    push @texts, [lc $1, $text];
  }
});
my @from = $message->header_as_obj('From') // ();
my @to = $message->header_as_obj('To') // ();
my ($sender) = map { $_->addresses } grep { ref } @from;
print JSON::PP->new->utf8->encode({
  subject => $message->header_str('Subject') // '',
  from => $sender ? {name => $sender->phrase // '', address => $sender->address // ''} : {},
  to => [map { $_->address } map { $_->addresses } grep { ref } @to],
  texts => \@texts,
  files => \@files,
});
