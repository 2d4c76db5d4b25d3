//! A C interface to encoding_rs and simdutf: one call converts a whole text by the fastest way that
//! the crate has and that notices invalid input.

use encoding_rs::{mem, CoderResult, Encoding, UTF_16LE, UTF_8};
use std::mem::size_of;
use std::slice::{from_raw_parts, from_raw_parts_mut};

/// The encoding of a label, or null. `label` points to `length` bytes.
#[no_mangle]
pub unsafe extern "C" fn encoding_rs_find(label: *const u8, length: usize) -> *const Encoding {
    Encoding::for_label(from_raw_parts(label, length)).map_or(std::ptr::null(), |e| e)
}

/// Converts `length` bytes at `source` and returns how many it wrote to `target`, or `usize::MAX`
/// when `capacity` is too small, the text is invalid UTF-8, or neither encoding is UTF-8 or UTF-16,
/// for which the crate has no call. UTF-16 is aligned and in host order.
#[no_mangle]
pub unsafe extern "C" fn encoding_rs_convert(
    from: &'static Encoding,
    to: &'static Encoding,
    source: *const u8,
    length: usize,
    target: *mut u8,
    capacity: usize,
) -> usize {
    let input = from_raw_parts(source, length);
    let output = from_raw_parts_mut(target, capacity);
    let units = from_raw_parts_mut(target as *mut u16, capacity / 2);
    if from == UTF_16LE {
        let input = from_raw_parts(source as *const u16, length / 2);
        if to == UTF_8 {
            return mem::convert_utf16_to_utf8(input, output);
        }
        let (result, _, written, _) = to.new_encoder().encode_from_utf16(input, output, true);
        return finish(result, written);
    }
    if from == UTF_8 && to == UTF_16LE {
        return 2 * mem::convert_utf8_to_utf16(input, units);
    }
    if from == UTF_8 {
        if Encoding::utf8_valid_up_to(input) != length {
            return usize::MAX;
        }
        let text = std::str::from_utf8_unchecked(input);
        let (result, _, written, _) = to.new_encoder().encode_from_utf8(text, output, true);
        return finish(result, written);
    }
    let mut decoder = from.new_decoder_without_bom_handling();
    if to == UTF_16LE {
        let (result, _, written, _) = decoder.decode_to_utf16(input, units, true);
        return finish(result, 2 * written);
    }
    if to == UTF_8 {
        let (result, _, written, _) = decoder.decode_to_utf8(input, output, true);
        return finish(result, written);
    }
    usize::MAX
}

fn finish(result: CoderResult, written: usize) -> usize {
    if result == CoderResult::InputEmpty {
        written
    } else {
        usize::MAX
    }
}

/// Converts `length` bytes at `source` between code pages and returns how many it wrote to `target`,
/// which must be big enough, or `usize::MAX` when the text is invalid or the crate lacks the pair. No
/// text at all tells whether it has it. Units are aligned.
#[no_mangle]
pub unsafe extern "C" fn simdutf_convert_pages(
    from: i32,
    to: i32,
    source: *const u8,
    length: usize,
    target: *mut u8,
) -> usize {
    macro_rules! with {
        ($function:ident, $from:ty, $to:ty) => {{
            let count = length / size_of::<$from>();
            let units = simdutf::$function(source as *const $from, count, target as *mut $to);
            if units == 0 && length != 0 { usize::MAX } else { units * size_of::<$to>() }
        }};
    }
    match (from, to) {
        (65001, 1200) => with!(convert_utf8_to_utf16le, u8, u16),
        (65001, 1201) => with!(convert_utf8_to_utf16be, u8, u16),
        (65001, 12000) => with!(convert_utf8_to_utf32, u8, u32),
        (65001, 28591) => with!(convert_utf8_to_latin1, u8, u8),
        (1200, 65001) => with!(convert_utf16le_to_utf8, u16, u8),
        (1200, 12000) => with!(convert_utf16le_to_utf32, u16, u32),
        (1200, 28591) => with!(convert_utf16le_to_latin1, u16, u8),
        (1201, 65001) => with!(convert_utf16be_to_utf8, u16, u8),
        (1201, 12000) => with!(convert_utf16be_to_utf32, u16, u32),
        (1201, 28591) => with!(convert_utf16be_to_latin1, u16, u8),
        (12000, 65001) => with!(convert_utf32_to_utf8, u32, u8),
        (12000, 1200) => with!(convert_utf32_to_utf16le, u32, u16),
        (12000, 1201) => with!(convert_utf32_to_utf16be, u32, u16),
        (12000, 28591) => with!(convert_utf32_to_latin1, u32, u8),
        (28591, 65001) => with!(convert_latin1_to_utf8, u8, u8),
        (28591, 1200) => with!(convert_latin1_to_utf16le, u8, u16),
        (28591, 1201) => with!(convert_latin1_to_utf16be, u8, u16),
        (28591, 12000) => with!(convert_latin1_to_utf32, u8, u32),
        _ => usize::MAX,
    }
}
