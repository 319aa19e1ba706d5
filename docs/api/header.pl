#!/usr/bin/perl
# Prepares a public header for Doxygen, which reads the output in its place. Every line keeps its number.
#
# - The header itself counts as documented; without that Doxygen leaves out its free functions.
# - The description of an opaque type belongs to a record without members.
# - Private members are left out, with their types and friends.
# - Indented lines of a comment are an example in C++.
# - A `//` comment between two blank lines is the heading of a section: its first sentence, which ends on the first line,
#   is the name, the rest a text. The section ends before the next heading, and with the class or the header.
use strict;
use warnings;

local $/;
my $text = <>;

$text =~ s|^#pragma once|/** \@file */ #pragma once|;
$text =~ s|^(///.*\nstruct \w+);|$1 { };|mg;
$text =~ s/^private:\n(.*?)(?=^(?:\};|public:|protected:))/"\n" x (1 + $1 =~ tr|\n||)/msge;
# The last line of an example is followed by a line that is not indented, or by what the comment describes.
$text =~ s|^([ ]*///)\n((?:\1[ ]{5}.*\n(?:\1\n(?=\1[ ]{5}))*)+)|"$1 \@code{.cpp}\n" . substr($2, 0, -1) . " \@endcode\n"|mge;

my $section = ''; # that is open: of a "class" or of the "header"
$text =~ s/^\n((?:[ ]*\/\/(?:[ ].*)?\n)+)(?=\n)|^(?=protected:|public:|\};|\} \/\/ )/
    defined $1 ? begin_section($1) : $section eq "class" || substr($text, $+[0], 2) eq "} " ? end_section() : ""/mge;
print $text, end_section();

# begin_section(comment): the beginning of a member group, with the name in place of the blank line before the comment.
sub begin_section {
    my ($comment) = @_;
    my $kind = $comment =~ m|^//| ? 'header' : 'class';
    my $lines = $comment =~ s|^ *// ?||mgr;
    my ($name, $rest) = $lines =~ /^([^\n]*?)\.(?=\s)(.*)\n$/s;
    die "$ARGV: the first sentence of a section must end on its first line:\n$lines" unless defined $name;
    my $end = end_section();
    $section = $kind;
    return "$end/** \@name $name\n$rest */ /** \@{ */\n";
}

sub end_section {
    my $end = $section ? '/** @} */ ' : '';
    $section = '';
    return $end;
}
