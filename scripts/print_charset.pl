# Prints what Perl's Encode maps in an encoding, for mapping_peers.py: lines "read CODE VALUE+VALUE"
# and "write CODE VALUE".
#
#     perl print_charset.pl ENCODING PATTERN...
#
# A pattern has the bytes that a code may have at each place: 8E,A1-B0,A1-FE,A1-FE.
use strict;
use warnings;
use Encode;

my ($name, @patterns) = @ARGV;
my $encoding = find_encoding($name) or die "Encode has no $name\n";
my %single;

sub read_codes {
    my ($code, @places) = @_;
    if (!@places) {
        my $bytes = $code;
        my $text = eval { $encoding->decode($bytes, Encode::FB_CROAK) };
        return if !defined $text || $text eq "" || $text =~ /\x{FFFD}/;
        $single{$code} = 1 if length $code == 1;
        printf "read %s %s\n", uc unpack("H*", $code),
            join "+", map { sprintf "%04X", ord } split //, $text;
        return;
    }
    return if $single{$code};
    my ($first, $last) = map { hex } split /-/, shift @places;
    read_codes($code . chr, @places) for $first .. $last // $first;
}

read_codes("", split /,/) for @patterns;
for my $value (0 .. 0xD7FF, 0xE000 .. 0x10FFFF) {
    next if $value >= 0xFDD0 && $value <= 0xFDEF || ($value & 0xFFFE) == 0xFFFE;
    my $text = chr $value;
    my $code = eval { $encoding->encode($text, Encode::FB_CROAK) };
    printf "write %s %04X\n", uc unpack("H*", $code), $value if defined $code && $code ne "";
}
