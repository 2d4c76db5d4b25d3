//! A C interface to encoding_rs: one call converts a whole text by the fastest way the crate has.

use encoding_rs::{mem, CoderResult, Encoding, UTF_16LE, UTF_8};
use std::slice::{from_raw_parts, from_raw_parts_mut};

/// The encoding of a label, or null. `label` points to `length` bytes.
#[no_mangle]
pub unsafe extern "C" fn peer_encoding(label: *const u8, length: usize) -> *const Encoding {
    Encoding::for_label(from_raw_parts(label, length)).map_or(std::ptr::null(), |e| e)
}

/// Converts `length` bytes at `source` and returns how many it wrote to `target`, or `usize::MAX`
/// when `capacity` is too small, the text is invalid UTF-8, or neither encoding is UTF-8 or UTF-16,
/// for which the crate has no call. UTF-16 is aligned and in host order.
#[no_mangle]
pub unsafe extern "C" fn peer_convert(
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
