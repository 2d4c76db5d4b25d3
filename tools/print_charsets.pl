# Answers what Perl's Encode maps in its encodings, for peers.py: questions and answers as those of
# PrintCharsets.java; shifts are none of Encode's.
use strict;
use warnings;
use Encode;

$| = 1;
my ($encoding, %single);

sub read_text {
    my $bytes = shift;
    my $text = eval { $encoding->decode($bytes, Encode::FB_CROAK) };
    return !defined $text || $text eq "" || $text =~ /\x{FFFD}/ ? undef : $text;
}

sub print_read {
    my ($code, $text) = @_;
    printf "read %s %s\n", uc unpack("H*", $code),
        join "+", map { sprintf "%04X", ord } split //, $text;
}

sub read_codes {
    my ($code, @places) = @_;
    if (!@places) {
        my $text = read_text($code);
        return if !defined $text;
        $single{$code} = 1 if length $code == 1;
        print_read($code, $text);
        return;
    }
    return if $single{$code};
    my ($first, $last) = map { hex } split /-/, shift @places;
    read_codes($code . chr, @places) for $first .. $last // $first;
}

sub print_written {
    my $given = shift;
    my $text = $given;
    my $code = eval { $encoding->encode($text, Encode::FB_CROAK) };
    printf "write %s %s\n", uc unpack("H*", $code),
        join "+", map { sprintf "%04X", ord } split //, $given if defined $code && $code ne "";
}

# Whether some of a block of values are written: what is not is left out.
sub holds_some {
    my $text = join "", map { chr } grep { is_scalar($_) } @_;
    my $code = eval { $encoding->encode($text, sub { "" }) };
    return !defined $code || $code ne "";
}

sub is_scalar {
    my $value = shift;
    return ($value < 0xD800 || $value > 0xDFFF) && ($value < 0xFDD0 || $value > 0xFDEF)
        && ($value & 0xFFFE) != 0xFFFE;
}

while (my $question = <STDIN>) {
    my ($name, @words) = split " ", $question;
    if ($name eq "list") {
        print "charset $_\n" for grep { Encode::find_encoding($_) } Encode->encodings(":all");
    } else {
        $encoding = find_encoding($name) or die "Encode has no $name\n";
        %single = ();
        if ($words[0] eq "text") {
            for (@words[1 .. $#words]) {
                if (/^=(.*)/) {
                    my $code = pack "H*", $1;
                    my $text = read_text($code);
                    print_read($code, $text) if defined $text;
                } else {
                    print_written(join "", map { chr hex } split /\+/);
                }
            }
        } else {
            read_codes("", split /,/) for @words;
            for (my $first = 0; $first < 0x110000; $first += 256) {
                next unless holds_some($first .. $first + 255);
                print_written(chr) for grep { is_scalar($_) } $first .. $first + 255;
            }
        }
    }
    print "end\n";
}
