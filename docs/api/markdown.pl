#!/usr/bin/perl
# Prepares a document for Doxygen, which reads the output in its place. Every line keeps its number.
#
# - Headings get the identifiers that code forges give them, after the page's name: `## First steps` of docs/views.md is
#   `views-first-steps`. Links to documents and headings become references, so that Doxygen reports dead ones.
# - Links to public headers lead to their pages. Other files of the project are not among the pages: of a link to one
#   the text remains.
# - Pictures with "@2x" in their file names have two pixels for each point.
use strict;
use warnings;

my %page_of = ('README.md' => 'index', 'docs/README.md' => 'guides', 'THIRD-PARTY.md' => 'third-party');
my ($folder, $document) = $ARGV[0] =~ m{(?:^|/)(docs/)?([^/]+)$};
$folder //= '';
my $page = page("$folder$document");

my $in_code = 0;
while (my $line = <>) {
    $in_code = !$in_code if $line =~ /^\s*```/;
    print $in_code || $line =~ /^    / ? $line : prepare($line);
}

sub prepare {
    my ($line) = @_;
    return $page eq 'index' ? $line : "# $1 {#$page}\n" if $line =~ /^# (.*)/; # the main page has a name
    return "$1 {#$page-" . identifier($2) . "}\n" if $line =~ /^(##+ (.*))/;
    # Not in code, which is between backquotes; two of them where it has an apostrophe.
    $line =~ s/(`[^`]*`)|(!?)\[([^]]*)\]\(([^)]*)\)/code($1) \/\/ ($2 ? picture($3, $4) : reference($3, $4))/ge;
    return $line;
}

sub code {
    my ($code) = @_;
    return defined $code && $code =~ /'/ ? "`$code`" : $code;
}

sub identifier {
    my ($heading) = @_;
    return lc($heading) =~ s/[^\w\s-]//gr =~ s/\s/-/gr;
}

# page(path in the project): the name of a document's page, or nothing.
sub page {
    my ($path) = @_;
    return $page_of{$path} // ($path =~ m{^docs/([\w-]+)\.md$} ? $1 : undef);
}

sub path_in_project {
    my ($target) = @_;
    return $target =~ m{^\.\./(.*)} ? $1 : "$folder$target";
}

sub picture {
    my ($description, $target) = @_;
    my $path = path_in_project($target);
    my $width = $path =~ /@(\d)x\.png$/ ? sprintf(' width="%d"', width_in_pixels($path) / $1) : '';
    my $source = $path =~ s{^docs/}{}r;
    return "\@htmlonly<img src=\"$source\"$width alt=\"$description\" />\@endhtmlonly";
}

# The width is the first number in the first chunk of a PNG file.
sub width_in_pixels {
    my ($path) = @_;
    open my $file, '<:raw', $path or return 0; # the check of the pages reports missing pictures
    read $file, my $bytes, 20;
    return unpack 'N', substr $bytes, 16;
}

sub reference {
    my ($text, $target) = @_;
    return "[$text]($target)" if $target =~ /^\w+:/;
    return "[$text](\@ref $page-$1)" if $target =~ /^#(.*)/;
    my ($file, $heading) = split /#/, $target;
    my $path = path_in_project($file);
    my $name = page($path);
    return "[$text](\@ref $name" . (defined $heading ? "-$heading" : '') . ')' if defined $name;
    return "[$text](\@ref $1)" if $path =~ m{^(?:platform/\w+/|qt/)?include/.*?(\w+\.h)$};
    return $text;
}
