// Finds the straight edges of a gray photograph: find_lines PICTURE.bmp
use std::ffi::{c_void, CString};
use std::os::raw::c_char;

#[repr(C)]
struct Segment { x1: i32, y1: i32, x2: i32, y2: i32, a: f64, b: f64, c: f64 }

#[link(name = "nuvimgsdk_c")]
extern "C" {
    fn NuvRead8BitBmpFile2Img(name: *const c_char, width: *mut i32, height: *mut i32) -> *mut u8;
    fn NuvImgChainLines_Initialize(width: i32, height: i32, min_straightness: f64, max_deviation: f64,
                                   min_length: i32, threshold: i32, max_lines: i32) -> bool;
    fn NuvImgChainLines_DoGryImg(gray: *mut u8, width: i32, height: i32, fit_lines: bool) -> i32;
    fn NuvImgChainLines_GetLines() -> *const Segment;
    fn nuv_free(p: *mut c_void);
}

fn main() {
    let name = CString::new(std::env::args().nth(1).expect("a picture")).unwrap();
    let (mut width, mut height) = (0, 0);
    unsafe {
        let gray = NuvRead8BitBmpFile2Img(name.as_ptr(), &mut width, &mut height);
        assert!(!gray.is_null() && NuvImgChainLines_Initialize(width, height, 0.9, 1.0, 25, 24, 3601));
        let n = NuvImgChainLines_DoGryImg(gray, width, height, true) as usize;
        if n > 0 {
            for s in std::slice::from_raw_parts(NuvImgChainLines_GetLines(), n) {
                println!("{},{},{},{}", s.x1, s.y1, s.x2, s.y2);
            }
        }
        nuv_free(gray as *mut c_void);
    }
}
